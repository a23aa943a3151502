// What MirrorClient does with the server's records.
#include "coresupport/trace.h"
#include "orbconnection/mirrorclient.h"
#include "orbconnection/mirrorvalue.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

namespace mirror
{
namespace
{
constexpr char sourceName[] = "orbconnection/mirrorclientapply";
}

bool MirrorClient::apply(const Record &record)
{
    switch (record.kind) {
    case RecordKind::SnapshotBegin:
        beginSnapshot();
        return true;
    case RecordKind::SnapshotEnd:
        if (!inSnapshot)
            return false;
        endSnapshot();
        return true;
    case RecordKind::Node:
        return applyNode(record);
    case RecordKind::NodeGone:
        return applyNodeGone(record);
    case RecordKind::Value:
        return applyValue(record);
    case RecordKind::ValueGone:
        return applyValueGone(record);
    case RecordKind::Change:
        return applyChange(record);
    }
    return false;
}

void MirrorClient::beginSnapshot()
{
    // One that was cut short leaves what it did not reach. The server has yet to hear of what was announced just now.
    for (const QString &valuePath : known.paths())
        if (!unconfirmed.isAnnounced(tree.findValue(valuePath)))
            staleValues.insert(valuePath);
    staleNodes.insert(nodes.begin(), nodes.end());
    inSnapshot = true;
}

void MirrorClient::endSnapshot()
{
    const std::set<QString> goneValues = std::exchange(staleValues, {});
    const std::set<QString> goneNodes = std::exchange(staleNodes, {});
    for (const QString &valuePath : goneValues)
        tree.removeValue(valuePath, this);
    for (const QString &nodePath : goneNodes)
        if (nodePath != path.top())
            tree.removeNode(nodePath, this);
    tree.addNode(path.top(), this); // also where the server has none
    inSnapshot = false;
    complete = true;
}

bool MirrorClient::applyNode(const Record &record)
{
    const QString absolute = path.absolute(record.path);
    staleNodes.erase(absolute);
    nodes.insert(absolute);
    tree.addNode(absolute, this);
    return true;
}

bool MirrorClient::applyNodeGone(const Record &record)
{
    if (record.path.isEmpty())
        removeAllBelow();
    else
        tree.removeNode(path.absolute(record.path), this);
    return true;
}

void MirrorClient::removeAllBelow()
{
    // The mirrored node itself stays: who watches it is to see what comes back.
    for (const QString &valuePath : known.paths())
        tree.removeValue(valuePath, this);
    const std::set<QString> gone = nodes;
    for (const QString &nodePath : gone)
        if (nodePath != path.top())
            tree.removeNode(nodePath, this);
}

bool MirrorClient::applyValue(const Record &record)
{
    if (record.id == 0 || (record.id & clientIdBit) || record.path.isEmpty())
        return false;
    const QString absolute = path.absolute(record.path);
    if (absolute == ownValuePath)
        return true;
    staleValues.erase(absolute);
    values::ValueBase *const value = tree.findValue(absolute);
    if (value && value->GetType() == record.type) {
        known.bind(record.id, value);
        std::string remaining;
        return value->SetCommandString(unconfirmed.without(value, record.frames, remaining), this);
    }
    if (value) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("%1 becomes a %2, as at the server").arg(absolute, record.typeName); });
        tree.removeValue(absolute, this);
    }
    incomingId = record.id;
    return addValue(tree, absolute, record, this);
}

bool MirrorClient::applyValueGone(const Record &record)
{
    if (values::ValueBase *const value = known.value(record.id))
        tree.removeValue(value->GetPathName(), this);
    return record.id != 0;
}

bool MirrorClient::applyChange(const Record &record)
{
    values::ValueBase *const value = known.value(record.id);
    if (!value) // of a class that is not known here, or removed here
        return record.id != 0;
    std::string remaining;
    return value->SetCommandString(unconfirmed.without(value, record.frames, remaining), this);
}
} // namespace mirror
