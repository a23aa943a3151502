#include "orbconnection/mirrorclient.h"

#include "orbconnection/mirrorvalue.h"
#include "valuetreelib/commandonvalue.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

namespace mirror
{
namespace
{
constexpr char sourceName[] = "orbconnection/mirrorclient";

void traceTooLarge(const QString &path, const std::string &frames)
{
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("The content of %1 is too large for the server: %2 bytes")
            .arg(path, QString::number(frames.size()));
    });
}
} // namespace

MirrorClient::MirrorClient(values::Tree &tree, const QString &path, const QString &ownValue,
                           const MirrorTiming &timing, const Outlet &outlet)
    : tree(tree), path(path), ownValuePath(ownValue.isEmpty() ? QString() : MirroredPath(path + u'/' + ownValue).top()),
      maximumBatchBytes(timing.maximumBatchBytes), writer(timing, outlet)
{
    tree.addListener(this->path.top(), this);
    for (const values::TreeItem *item : tree.subtree(this->path.top()))
        if (item->isNode())
            ownNodes.insert(item->GetPathName());
    nodesToCheck = ownNodes;
}

MirrorClient::~MirrorClient()
{
    tree.removeListener(this);
}

void MirrorClient::begin()
{
    ++turn;
    for (Place place = 1; place <= paths.last(); ++place) {
        if (paths[place].value)
            staleValues.insert(paths[place].path);
        if (paths[place].hasNode)
            staleNodes.insert(paths[place].path);
    }
    paths.clear();
    serverNamed.clear();
    writer.restart();
    lastNumber = 0;
    recordsSent = confirmed = lastReceived = 0;
    mayBeKnown = inSnapshot = complete = false;
    inSession = true;
}

void MirrorClient::lose()
{
    if (!inSession)
        return;
    ++turn;
    inSession = inSnapshot = complete = false;
    paths.clearDirty();
    std::vector<QString> valuePaths;
    std::vector<QString> nodePaths{path.top()};
    for (Place place = 1; place <= paths.last(); ++place) {
        if (paths[place].value)
            valuePaths.push_back(paths[place].path);
        if (paths[place].hasNode && paths[place].path != path.top())
            nodePaths.push_back(paths[place].path);
    }
    // By path each time, since observers may remove what comes next.
    for (const QString &valuePath : valuePaths)
        if (values::ValueBase *const value = tree.findValue(valuePath))
            tellObservers(sourceName, [&] { value->SetState(values::ValueStateConnectionLost, this); });
    for (const QString &nodePath : nodePaths)
        if (values::Node *const node = tree.findNode(nodePath))
            tellObservers(sourceName, [&] { node->NotifyObservers(ChangeCodeDeleted, this); });
    for (const QString &valuePath : valuePaths)
        if (values::ValueBase *const value = tree.findValue(valuePath))
            tellObservers(sourceName, [&] { value->NotifyObservers(ChangeCodeDeleted, this); });
}

void MirrorClient::detach()
{
    tree.removeListener(this);
}

void MirrorClient::removeAll()
{
    tellObservers(sourceName, [this] { tree.removeNode(path.top(), this); });
}

void MirrorClient::itemAdded(values::TreeItem &item, IObserver *originator)
{
    if (item.isNode() && item.GetPathName() != arrivingNode) {
        ownNodes.insert(item.GetPathName());
        nodesToCheck.insert(item.GetPathName());
        writer.wantFlush();
    }
    if (item.isNode() || isOwn(item))
        return;
    auto &value = static_cast<values::ValueBase &>(item);
    if (originator == this) {
        paths.bind(arriving, &value); // before observers can change it
        return;
    }
    if (dynamic_cast<const ClientOriginator *>(originator)) {
        // A client of this process wants to have it, and so do we of our server.
        if (complete)
            announce(value);
        else
            wanted.insert(value.GetPathName());
        return;
    }
    fresh.insert(&value);
    writer.wantFlush();
}

void MirrorClient::itemRemoved(values::TreeItem &item, IObserver *originator)
{
    const bool isToldToServer = inSession && originator != this;
    checkNodeAbove(item);
    if (item.isNode()) {
        ownNodes.erase(item.GetPathName());
        const bool isTop = item.GetPathName() == path.top(); // which is here although the server may have none
        mayBeKnown = mayBeKnown || isTop;
        const Place place = isTop ? paths.placeOf(path.top()) : paths.find(item.GetPathName());
        if (place && (std::exchange(paths[place].hasNode, false) || isTop) && isToldToServer)
            makeDirty(place, nodePart);
        return;
    }
    const auto *const value = static_cast<const values::ValueBase *>(&item);
    fresh.remove(value);
    wanted.erase(item.GetPathName());
    staleValues.remove(item.GetPathName());
    const Place place = paths.find(value);
    if (!place)
        return;
    paths.unbind(place);
    // What was to be told of the value is void, but not that a node of its path is gone.
    const Parts rest = (paths.takeDirty(place) & nodePart) | (isToldToServer ? gonePart : 0);
    if (rest)
        makeDirty(place, rest);
}

void MirrorClient::checkNodeAbove(const values::TreeItem &item)
{
    if (ownNodes.empty())
        return;
    const QString above = nodeAbove(item.GetPathName());
    if (!ownNodes.contains(above))
        return;
    nodesToCheck.insert(above);
    writer.wantFlush();
}

void MirrorClient::valueChanged(const values::ValueChange &change)
{
    if (change.originator == this || change.code == ChangeCodeDeleted)
        return;
    const Place place = placeToTell(change.value, change.forced);
    if (!place)
        return;
    const Parts parts = partsOf(change);
    if (parts && change.value.isOptimized())
        return makeDirty(place, parts);
    event.clear();
    change.value.AddCommandForTransmission(change.code, change.forced, event);
    tellEvent(place, parts ? parts : everyPart);
}

void MirrorClient::commandRecorded(values::ValueBase &value, const values::ValueBase::CommandOnValue &command)
{
    if (command.originator() == this)
        return;
    if (const Place place = placeToTell(value, false)) {
        event.clear();
        value.AddCommand(command, event);
        tellEvent(place, everyPart);
    }
}

MirrorClient::Place MirrorClient::placeToTell(values::ValueBase &value, bool forced)
{
    if (isOwn(value))
        return 0;
    if (const Place place = paths.find(&value))
        return inSession ? place : 0; // else the server's word comes with the next session
    if (fresh.contains(&value) && !forced)
        return 0; // its seed
    if (complete)
        return announce(value);
    if (!staleValues.contains(value.GetPathName()))
        wanted.insert(value.GetPathName());
    return 0;
}

MirrorClient::Place MirrorClient::announce(values::ValueBase &value)
{
    mayBeKnown = true;
    fresh.remove(&value);
    const Place place = paths.placeOf(value.GetPathName());
    paths.bind(place, &value);
    paths[place].type = value.GetType();
    makeDirty(place, wholePart);
    return place;
}

void MirrorClient::makeDirty(Place place, Parts parts)
{
    paths.makeDirty(place, parts);
    writer.wantFlush();
}

void MirrorClient::tellEvent(Place place, Parts merged)
{
    if (event.empty())
        return;
    if (!writer.hasRoomForEvents())
        return makeDirty(place, merged);
    writeDirty(false);
    writeSet(place, event);
    writer.wantFlush();
}

bool MirrorClient::flush()
{
    fresh.clear();
    if (isSettled())
        removeEmptyNodes();
    const bool isClean = writeDirty(true);
    return writer.flush() && isClean;
}

bool MirrorClient::writeDirty(bool onlyWithRoom)
{
    while (const Place place = paths.firstDirty()) {
        if (onlyWithRoom && !writer.hasRoom())
            return false;
        write(place);
    }
    return true;
}

void MirrorClient::write(Place place)
{
    const Parts parts = paths.takeDirty(place);
    if (parts & gonePart)
        writeAbout(place, {.kind = RecordKind::ValueGone});
    if (parts & nodePart)
        writeAbout(place, {.kind = RecordKind::NodeGone});
    if (paths[place].value && (parts & wholePart))
        writeValue(place);
    if (!paths[place].value || !(parts & everyPart))
        return;
    scratch.clear();
    appendParts(*paths[place].value, parts, scratch);
    if (!scratch.empty())
        writeSet(place, scratch);
}

void MirrorClient::writeValue(Place place)
{
    const values::ValueBase &value = *paths[place].value;
    scratch.clear();
    value.AddObjectStateStringForTransmission(scratch);
    const QByteArray typeName = value.GetTypeName().toUtf8();
    const bool written = writeAbout(place, {.kind = RecordKind::Value, .type = value.GetType(),
                                            .typeName = viewOf(typeName), .frames = scratch});
    if (!written) {
        traceTooLarge(paths[place].path, scratch);
        paths.unbind(place); // stays this side's own
    }
}

void MirrorClient::writeSet(Place place, const std::string &frames)
{
    if (!writeAbout(place, {.kind = RecordKind::Set, .type = paths[place].type, .frames = frames}))
        traceTooLarge(paths[place].path, frames);
}

bool MirrorClient::writeAbout(Place place, Record record)
{
    PathTable::Entry &entry = paths[place];
    if (entry.number == 0) {
        const QByteArray relative = path.relative(entry.path).value_or(QByteArray());
        writer.write({.kind = RecordKind::Path, .path = viewOf(relative)});
        entry.number = ++lastNumber;
        ++recordsSent;
    }
    record.number = entry.number;
    if (!writer.write(record))
        return false;
    (record.kind == RecordKind::NodeGone ? entry.nodeSent : entry.valueSent) = ++recordsSent;
    return true;
}
} // namespace mirror
