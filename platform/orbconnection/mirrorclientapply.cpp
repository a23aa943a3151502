// What MirrorClient does with the server's records.
#include "orbconnection/mirrorclient.h"
#include "orbconnection/mirrorvalue.h"
#include "valuetreelib/commandframe.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

#include <algorithm>

namespace mirror
{
namespace
{
constexpr char sourceName[] = "orbconnection/mirrorclientapply";

MirrorClient::Outcome refuse(const char *reason)
{
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("The server's batch is refused: %1").arg(QLatin1String(reason)); });
    return MirrorClient::Outcome::Malformed;
}

bool beginsSnapshot(const values::ByteCursor &in)
{
    return !in.isAtEnd() && *in.position == static_cast<char>(RecordKind::SnapshotBegin);
}
} // namespace

MirrorClient::Outcome MirrorClient::receive(std::string_view batch)
{
    if (batch.size() > maximumBatchBytes)
        return refuse("it is too long");
    values::ByteCursor in{batch.data(), batch.data() + batch.size()};
    const std::optional<quint64> sequence = readHeader(in);
    if (!sequence)
        return refuse("no header of this version");
    if (*sequence <= lastReceived)
        return Outcome::Repeated;
    if (*sequence != lastReceived + 1 && !beginsSnapshot(in))
        return Outcome::Missing;
    if (lastReceived == 0 && !beginsSnapshot(in))
        return refuse("it comes before the snapshot");
    lastReceived = *sequence;
    const bool wasComplete = complete;
    const quint64 own = ++turn;
    while (!in.isAtEnd() && turn == own) {
        const std::optional<Record> record = readRecord(in);
        if (!record || !apply(*record))
            return refuse("it is malformed");
    }
    if (turn != own)
        return Outcome::Missing; // what is left of this batch is older than what an observer has let in
    return complete && !wasComplete ? Outcome::SnapshotComplete : Outcome::Applied;
}

bool MirrorClient::apply(const Record &record)
{
    switch (record.kind) {
    case RecordKind::SnapshotBegin:
        beginSnapshot();
        [[fallthrough]];
    case RecordKind::Applied:
        confirmed = std::max(confirmed, record.count);
        return record.count <= recordsSent;
    case RecordKind::SnapshotEnd:
        return endSnapshot();
    case RecordKind::Path:
        return applyPath(record);
    case RecordKind::Node:
    case RecordKind::NodeGone:
    case RecordKind::Value:
    case RecordKind::ValueGone:
    case RecordKind::Change:
        return applyAbout(record);
    case RecordKind::Set:
        return false; // only a client says so
    }
    return false;
}

bool MirrorClient::applyAbout(const Record &record)
{
    if (record.number == 0 || record.number > serverNamed.size())
        return false;
    const Place place = serverNamed[record.number - 1];
    if (!place || paths[place].path == ownValuePath)
        return true;
    noteNamed(place, record.kind);
    const bool isOfNode = record.kind == RecordKind::Node || record.kind == RecordKind::NodeGone;
    if (isOfNode ? isNodePassedOver(place) : isPassedOver(place))
        return true;
    switch (record.kind) {
    case RecordKind::Node:
        applyNode(place);
        return true;
    case RecordKind::NodeGone:
        removeNode(QString(paths[place].path));
        return true;
    case RecordKind::Value:
        applyValue(place, record);
        return true;
    case RecordKind::ValueGone:
        applyValueGone(place);
        return true;
    default:
        applyFrames(place, record.frames);
        return true;
    }
}

void MirrorClient::beginSnapshot()
{
    // The server names again what it has named before.
    mayBeKnown = mayBeKnown || !serverNamed.empty();
    serverNamed.clear();
    for (Place place = 1; place <= paths.last(); ++place)
        paths[place].valueNamed = paths[place].nodeNamed = false;
    inSnapshot = true;
}

bool MirrorClient::endSnapshot()
{
    if (!inSnapshot)
        return false;
    inSnapshot = false;
    const quint64 own = turn;
    removeUnnamed();
    addTop(); // also where the server has none
    if (turn == own) {
        complete = true;
        announceWanted();
        writer.wantFlush(); // for nodes that were left to the server's word
    }
    return true;
}

void MirrorClient::removeUnnamed()
{
    std::set<QString> goneNodes = std::exchange(staleNodes, {});
    const QSet<QString> stale = std::exchange(staleValues, {});
    std::vector<QString> goneValues(stale.begin(), stale.end());
    std::ranges::sort(goneValues);
    for (Place place = 1; place <= paths.last(); ++place) {
        const PathTable::Entry &entry = paths[place];
        if (entry.value && !entry.valueNamed && !isPassedOver(place))
            goneValues.push_back(entry.path);
        if (entry.hasNode && !entry.nodeNamed && !isNodePassedOver(place))
            goneNodes.insert(entry.path);
    }
    for (const QString &valuePath : goneValues)
        tellObservers(sourceName, [&] { tree.removeValue(valuePath, this); });
    // What is left below them is named, or stays as the client's own.
    for (auto nodePath = goneNodes.rbegin(); nodePath != goneNodes.rend(); ++nodePath)
        removeIfEmpty(*nodePath);
}

void MirrorClient::announceWanted()
{
    for (const QString &valuePath : std::exchange(wanted, {})) {
        values::ValueBase *const value = tree.findValue(valuePath);
        if (value && !paths.find(value))
            announce(*value);
    }
}

bool MirrorClient::applyPath(const Record &record)
{
    const QString absolute = path.absolute(record.path);
    const bool canBe = values::Tree::canHold(absolute);
    if (!canBe)
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("The server's path is refused: %1").arg(absolute.left(200)); });
    serverNamed.push_back(!canBe ? 0 : mayBeKnown ? paths.placeOf(absolute) : paths.add(absolute));
    return true;
}

void MirrorClient::noteNamed(Place place, RecordKind kind)
{
    PathTable::Entry &entry = paths[place];
    if (kind == RecordKind::Node || kind == RecordKind::NodeGone)
        entry.nodeNamed = true;
    else
        entry.valueNamed = true;
    // What is said to be gone goes with the rest that is stale.
    if (kind == RecordKind::Value && !staleValues.isEmpty())
        staleValues.remove(entry.path);
    if (kind == RecordKind::Node && !staleNodes.empty())
        staleNodes.erase(entry.path);
}

bool MirrorClient::isPassedOver(Place place) const
{
    return (paths[place].dirty & ~nodePart) != 0 || paths[place].valueSent > confirmed;
}

bool MirrorClient::isNodePassedOver(Place place) const
{
    return (paths[place].dirty & nodePart) != 0 || paths[place].nodeSent > confirmed;
}

void MirrorClient::applyNode(Place place)
{
    paths[place].hasNode = true;
    arrivingNode = paths[place].path;
    ownNodes.erase(arrivingNode);
    tellObservers(sourceName, [this] { tree.addNode(QString(arrivingNode), this); });
    arrivingNode.clear();
}

void MirrorClient::removeNode(const QString &nodePath)
{
    std::vector<QString> nodes;
    std::vector<QString> goneValues;
    bool allGoes = nodePath != path.top(); // who watches the mirrored node itself is to see what comes back
    for (const values::TreeItem *item : tree.subtree(nodePath)) {
        const Place place = item->isNode() ? 0 : paths.find(static_cast<const values::ValueBase *>(item));
        if (item->isNode())
            nodes.push_back(item->GetPathName());
        else if (place && !isPassedOver(place))
            goneValues.push_back(item->GetPathName());
        else
            allGoes = false; // the server has yet to hear of it, or never will; or the end of the snapshot takes it
    }
    if (allGoes) {
        tellObservers(sourceName, [&] { tree.removeNode(nodePath, this); });
        return;
    }
    // By path each time, since observers may remove what comes next.
    for (const QString &valuePath : goneValues)
        tellObservers(sourceName, [&] { tree.removeValue(valuePath, this); });
    for (auto below = nodes.rbegin(); below != nodes.rend(); ++below)
        removeIfEmpty(*below);
    if (nodePath == path.top())
        addTop();
}

bool MirrorClient::removeIfEmpty(const QString &nodePath)
{
    const values::Node *const node = tree.findNode(nodePath);
    if (!node || nodePath == path.top())
        return false;
    if (node->isEmpty()) {
        tellObservers(sourceName, [&] { tree.removeNode(nodePath, this); });
        return true;
    }
    ownNodes.insert(nodePath);
    if (const Place place = paths.find(nodePath))
        paths[place].hasNode = false;
    return false;
}

void MirrorClient::removeEmptyNodes()
{
    for (QString nodePath : std::exchange(nodesToCheck, {}))
        while (ownNodes.contains(nodePath) && removeIfEmpty(nodePath))
            nodePath = nodeAbove(nodePath);
}

void MirrorClient::addTop()
{
    tellObservers(sourceName, [this] { tree.addNode(path.top(), this); });
}

void MirrorClient::applyValue(Place place, const Record &record)
{
    paths[place].type = record.type;
    const QString valuePath = paths[place].path;
    values::ValueBase *value = paths[place].value ? paths[place].value : tree.findValue(valuePath);
    if (value && !isOfClass(*value, record)) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("%1 becomes a %2, as at the server").arg(valuePath, textOf(record.typeName));
        });
        const quint64 own = turn;
        tellObservers(sourceName, [&] { tree.removeValue(valuePath, this); });
        value = tree.findValue(valuePath);
        if (turn != own || (value && !isOfClass(*value, record)))
            return; // an observer will have its own, or no more of this batch
    }
    if (!value)
        return addValue(place, record);
    if (!paths[place].value)
        paths.bind(place, value);
    fresh.remove(value);
    applyFrames(place, record.frames);
}

void MirrorClient::addValue(Place place, const Record &record)
{
    const QString valuePath = paths[place].path;
    std::unique_ptr<values::ValueBase> value = makeValue(record, valuePath, this);
    if (!value)
        return;
    arriving = place;
    tellObservers(sourceName, [&] { tree.addValueAt(valuePath, std::move(value), this); });
}

void MirrorClient::applyValueGone(Place place)
{
    if (!paths[place].value)
        return; // what stands there, if anything, is not the server's
    const QString valuePath = paths[place].path;
    tellObservers(sourceName, [&] { tree.removeValue(valuePath, this); });
}

void MirrorClient::applyFrames(Place place, std::string_view frames)
{
    const quint64 own = turn;
    values::ByteCursor in{frames.data(), frames.data() + frames.size()};
    while (const std::optional<values::CommandFrame> frame = values::nextFrame(in)) {
        // Asked anew for each frame: observers may answer, or remove the value.
        values::ValueBase *const value = paths[place].value;
        if (!value || isPassedOver(place))
            return;
        tellObservers(sourceName, [&] { value->SetCommandString(frame->command, frame->payload, this); });
        if (turn != own)
            return;
    }
    if (!in.isAtEnd())
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("%1: the server's word is incomplete").arg(paths[place].path); });
}
} // namespace mirror
