#include "orbconnection/mirrorsession.h"

#include "coresupport/trace.h"
#include "orbconnection/mirrorvalue.h"
#include "valuetreelib/commandonvalue.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

namespace mirror
{
namespace
{
constexpr char sourceName[] = "orbconnection/mirrorsession";

bool refuse(const char *reason)
{
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("A client's batch is refused: %1").arg(QString::fromUtf8(reason)); });
    return false;
}
} // namespace

MirrorSession::MirrorSession(values::Tree &tree, const QString &path, const MirrorTiming &timing,
                             BatchWriter::Sink sink, std::function<void()> wantsFlush)
    : tree(tree), path(path), maximumBatchBytes(timing.maximumBatchBytes), writer(timing, std::move(sink)),
      wantsFlush(std::move(wantsFlush))
{
    tree.addListener(this->path.top(), this);
}

MirrorSession::~MirrorSession()
{
    tree.removeListener(this);
}

void MirrorSession::sendSnapshot()
{
    // Ids stay known: what the client has sent meanwhile has them.
    writer.setSnapshot(true);
    writer.write({.kind = RecordKind::SnapshotBegin});
    for (values::TreeItem *item : tree.subtree(path.top()))
        writeItem(*item);
    writer.write({.kind = RecordKind::SnapshotEnd});
    writer.setSnapshot(false);
}

void MirrorSession::flush()
{
    writer.flush();
}

bool MirrorSession::receive(std::string_view batch)
{
    if (batch.size() > maximumBatchBytes)
        return refuse("it is too long");
    values::ByteCursor in{batch.data(), batch.data() + batch.size()};
    const std::optional<BatchHeader> header = readHeader(in);
    if (!header)
        return refuse("no header of this version");
    if (header->sequence <= lastReceived)
        return true; // sent again, since its answer was lost
    if (header->sequence != lastReceived + 1)
        return refuse("some before it are missing");
    // What was written before is older than the client's changes, and the client has to know.
    writer.flush();
    lastReceived = header->sequence;
    writer.setApplied(lastReceived);
    try {
        while (!in.isAtEnd()) {
            const std::optional<Record> record = readRecord(in);
            if (!record || !apply(*record))
                return refuse("it is malformed");
        }
    } catch (const std::exception &e) { // an observer's; the rest of the batch would be missing
        return refuse(e.what());
    }
    return true;
}

void MirrorSession::itemAdded(values::TreeItem &item, IObserver *originator)
{
    if (originator != this)
        writeItem(item);
    else if (!item.isNode()) // before observers can change it
        known.bind(clientIdBit | lastClientId, static_cast<values::ValueBase *>(&item));
}

void MirrorSession::itemRemoved(values::TreeItem &item, IObserver *)
{
    const QString gone = item.GetPathName();
    if (!item.isNode()) {
        const quint32 id = known.id(static_cast<values::ValueBase *>(&item));
        known.removeValue(gone);
        if (id != 0)
            write({.kind = RecordKind::ValueGone, .id = id});
        return;
    }
    known.removeBelow(gone);
    // A node above takes the mirrored one with it.
    const QByteArray relative = path.relative(gone).value_or(QByteArray());
    write({.kind = RecordKind::NodeGone, .path = viewOf(relative)});
}

void MirrorSession::valueChanged(const values::ValueChange &change)
{
    if (change.originator == this)
        return;
    scratch.clear();
    change.value.AddCommandForTransmission(change.code, change.forced, scratch);
    writeChange(change.value, scratch);
}

void MirrorSession::commandRecorded(values::ValueBase &value, const values::ValueBase::CommandOnValue &command)
{
    if (command.originator() == this)
        return;
    scratch.clear();
    value.AddCommand(command, scratch);
    writeChange(value, scratch);
}

void MirrorSession::write(const Record &record)
{
    const bool first = writer.isEmpty();
    writer.write(record);
    if (first && !writer.isEmpty())
        wantsFlush();
}

void MirrorSession::writeItem(values::TreeItem &item)
{
    const std::optional<QByteArray> relative = path.relative(item.GetPathName());
    if (!relative)
        return;
    if (item.isNode())
        return write({.kind = RecordKind::Node, .path = viewOf(*relative)});
    auto &value = static_cast<values::ValueBase &>(item);
    quint32 id = known.id(&value);
    if (id == 0 || (id & clientIdBit))
        known.bind(id = ++lastId, &value);
    writeValue(value, id, *relative, scratch, [this](const Record &record) { write(record); });
}

void MirrorSession::writeChange(const values::ValueBase &value, const std::string &frames)
{
    const quint32 id = known.id(&value);
    if (id != 0 && !frames.empty())
        write({.kind = RecordKind::Change, .id = id, .frames = frames});
}

bool MirrorSession::apply(const Record &record)
{
    switch (record.kind) {
    case RecordKind::Value:
        return applyValue(record);
    case RecordKind::Change:
        return applyChange(record);
    case RecordKind::SnapshotBegin:
    case RecordKind::SnapshotEnd:
    case RecordKind::Node:
    case RecordKind::NodeGone:
    case RecordKind::ValueGone:
        return false; // only a server says so
    }
    return false;
}

bool MirrorSession::applyValue(const Record &record)
{
    if (record.id != (clientIdBit | (lastClientId + 1)) || record.path.empty())
        return false;
    ++lastClientId;
    const QString absolute = path.absolute(record.path);
    if (values::ValueBase *const value = tree.findValue(absolute)) {
        if (value->GetType() == record.type) {
            known.bind(record.id, value);
            return value->SetCommandString(record.frames, this);
        }
        // The client is about to replace its own by ours, and knows that by our id alone.
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("%1 is of another class here than at a client").arg(absolute); });
        return true;
    }
    return addValue(tree, absolute, record, this);
}

bool MirrorSession::applyChange(const Record &record)
{
    const bool byClient = record.id & clientIdBit;
    if ((record.id & ~clientIdBit) > (byClient ? lastClientId : lastId) || record.id == 0)
        return false; // was never given
    values::ValueBase *const value = known.value(record.id);
    return !value || value->SetCommandString(record.frames, this); // it may have gone meanwhile
}
} // namespace mirror
