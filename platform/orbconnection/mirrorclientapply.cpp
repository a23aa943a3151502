// What MirrorClient does with the server's records.
#include "coresupport/trace.h"
#include "orbconnection/mirrorclient.h"
#include "orbconnection/mirrorvalue.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

#include <algorithm>

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
    const QString gone = path.absolute(record.path);
    const std::vector<QString> announced = announcedBelow(gone);
    // The mirrored node itself stays: who watches it is to see what comes back.
    if (gone != path.top() && announced.empty())
        tree.removeNode(gone, this);
    else
        removeAllBelowBut(announced, gone);
    return true;
}

std::vector<QString> MirrorClient::announcedBelow(const QString &top) const
{
    std::vector<QString> announced;
    for (const values::ValueBase *value : known.valuesBelow(top))
        if (unconfirmed.isAnnounced(value))
            announced.push_back(value->GetPathName());
    return announced;
}

void MirrorClient::removeAllBelowBut(const std::vector<QString> &kept, const QString &top)
{
    // By path each time, since observers may remove what comes next.
    std::vector<QString> goneValues;
    for (const values::ValueBase *value : known.valuesBelow(top))
        if (std::ranges::find(kept, value->GetPathName()) == kept.end())
            goneValues.push_back(value->GetPathName());
    for (const QString &valuePath : goneValues)
        tree.removeValue(valuePath, this);
    const std::set<QString> mirroredNodes = nodes;
    const auto goes = [&](const QString &nodePath) {
        const auto holds = [&](const QString &valuePath) { return valuePath.startsWith(nodePath + u'/'); };
        return (nodePath == top || MirroredPath(top).relative(nodePath)) && nodePath != path.top()
               && std::ranges::none_of(kept, holds);
    };
    for (const QString &nodePath : mirroredNodes)
        if (goes(nodePath))
            tree.removeNode(nodePath, this);
}

bool MirrorClient::applyValue(const Record &record)
{
    if (record.id == 0 || (record.id & clientIdBit) || record.path.empty())
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
                [&] { return QStringLiteral("%1 becomes a %2, as at the server").arg(absolute, textOf(record.typeName)); });
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
