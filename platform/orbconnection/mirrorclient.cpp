#include "orbconnection/mirrorclient.h"

#include "coresupport/trace.h"
#include "orbconnection/mirrorvalue.h"
#include "valuetreelib/commandonvalue.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

namespace mirror
{
namespace
{
constexpr char sourceName[] = "orbconnection/mirrorclient";

MirrorClient::Outcome refuse(const char *reason)
{
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("The server's batch is refused: %1").arg(QString::fromUtf8(reason)); });
    return MirrorClient::Outcome::Malformed;
}

/// Who throws when it is told of a loss does not keep others from hearing of theirs.
template <typename Telling> void tell(const Telling &telling)
{
    try {
        telling();
    } catch (const std::exception &e) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("An observer cannot be told of a loss: %1").arg(QString::fromUtf8(e.what()));
        });
    }
}

bool beginsSnapshot(const values::ByteCursor &in)
{
    return !in.isAtEnd() && *in.position == static_cast<char>(RecordKind::SnapshotBegin);
}
} // namespace

MirrorClient::MirrorClient(values::Tree &tree, const QString &path, const QString &ownValue,
                           const MirrorTiming &timing, BatchWriter::Sink sink, std::function<void()> wantsFlush)
    : tree(tree), path(path), ownValuePath(MirroredPath(path + u'/' + ownValue).top()),
      maximumBatchBytes(timing.maximumBatchBytes), writer(timing, std::move(sink)), wantsFlush(std::move(wantsFlush))
{
    tree.addListener(this->path.top(), this);
}

MirrorClient::~MirrorClient()
{
    tree.removeListener(this);
}

void MirrorClient::begin()
{
    writer.restart();
    unconfirmed.clear();
    for (const QString &valuePath : known.paths())
        staleValues.insert(valuePath);
    known.clear();
    lastReceived = 0;
    lastOwnId = 0;
    inSnapshot = false;
    complete = false;
    inSession = true;
}

MirrorClient::Outcome MirrorClient::receive(std::string_view batch)
{
    if (batch.size() > maximumBatchBytes)
        return refuse("it is too long");
    values::ByteCursor in{batch.data(), batch.data() + batch.size()};
    const std::optional<BatchHeader> header = readHeader(in);
    if (!header)
        return refuse("no header of this version");
    if (header->sequence <= lastReceived)
        return Outcome::Repeated;
    if (header->sequence != lastReceived + 1 && !beginsSnapshot(in))
        return Outcome::Missing;
    if (lastReceived == 0 && !beginsSnapshot(in))
        return refuse("it comes before the snapshot");
    lastReceived = header->sequence;
    unconfirmed.confirm(header->applied);
    const bool wasComplete = complete;
    try {
        while (!in.isAtEnd() && inSession) {
            const std::optional<Record> record = readRecord(in);
            if (!record || !apply(*record))
                return refuse("it is malformed");
        }
    } catch (const std::exception &e) { // an observer's; the rest of the batch would be missing
        return refuse(e.what());
    }
    return complete && !wasComplete ? Outcome::SnapshotComplete : Outcome::Applied;
}

void MirrorClient::lose()
{
    if (!inSession)
        return;
    inSession = false;
    complete = false;
    unconfirmed.clear();
    const std::vector<QString> valuePaths = known.paths();
    const std::set<QString> nodePaths = nodes;
    // By path each time, since observers may remove what comes next.
    for (const QString &valuePath : valuePaths)
        if (values::ValueBase *const value = tree.findValue(valuePath))
            tell([&] { value->SetState(values::ValueStateConnectionLost, this); });
    for (const QString &nodePath : nodePaths)
        if (values::Node *const node = tree.findNode(nodePath))
            tell([&] { node->NotifyObservers(ChangeCodeDeleted, this); });
    for (const QString &valuePath : valuePaths)
        if (values::ValueBase *const value = tree.findValue(valuePath))
            tell([&] { value->NotifyObservers(ChangeCodeDeleted, this); });
}

void MirrorClient::detach()
{
    tree.removeListener(this);
}

void MirrorClient::flush()
{
    writer.flush();
}

void MirrorClient::itemAdded(values::TreeItem &item, IObserver *originator)
{
    if (originator == this && !item.isNode()) // before observers can change it
        known.bind(incomingId, static_cast<values::ValueBase *>(&item));
}

void MirrorClient::itemRemoved(values::TreeItem &item, IObserver *)
{
    const QString gone = item.GetPathName();
    if (!item.isNode()) {
        unconfirmed.remove(static_cast<values::ValueBase *>(&item));
        known.removeValue(gone);
        return;
    }
    for (const values::ValueBase *below : known.valuesBelow(gone))
        unconfirmed.remove(below);
    known.removeBelow(gone);
    nodes.erase(gone);
    const QString prefix = gone + u'/';
    auto node = nodes.lower_bound(prefix);
    while (node != nodes.end() && node->startsWith(prefix))
        node = nodes.erase(node);
}

bool MirrorClient::isOurs(const values::ValueBase &value, const IObserver *originator) const
{
    return originator == this || !complete || value.GetPathName() == ownValuePath;
}

void MirrorClient::valueChanged(const values::ValueChange &change)
{
    if (isOurs(change.value, change.originator) || change.code == ChangeCodeDeleted)
        return;
    std::string frames;
    change.value.AddCommandForTransmission(change.code, change.forced, frames);
    announce(change.value);
    send(change.value, frames);
}

void MirrorClient::commandRecorded(values::ValueBase &value, const values::ValueBase::CommandOnValue &command)
{
    if (isOurs(value, command.originator()))
        return;
    std::string frames;
    value.AddCommand(command, frames);
    announce(value);
    send(value, frames);
}

void MirrorClient::announce(values::ValueBase &value)
{
    const std::optional<QByteArray> relative = path.relative(value.GetPathName());
    if (known.id(&value) != 0 || !relative)
        return;
    const quint32 id = clientIdBit | ++lastOwnId;
    known.bind(id, &value);
    writeValue(value, id, *relative, scratch, [this](const Record &record) { write(record); });
    unconfirmed.announce(&value, scratch, writer.lastSequence());
    staleValues.erase(value.GetPathName());
}

void MirrorClient::send(const values::ValueBase &value, const std::string &frames)
{
    const quint32 id = known.id(&value);
    if (id == 0 || frames.empty())
        return;
    write({.kind = RecordKind::Change, .id = id, .frames = frames});
    unconfirmed.add(&value, frames, writer.lastSequence());
}

void MirrorClient::write(const Record &record)
{
    const bool first = writer.isEmpty();
    writer.write(record);
    if (first && !writer.isEmpty())
        wantsFlush();
}
} // namespace mirror
