#include "orbconnection/mirrorsession.h"

#include "valuetreelib/commandframe.h"
#include "valuetreelib/commandonvalue.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

namespace mirror
{
namespace
{
constexpr char sourceName[] = "orbconnection/mirrorsession";

void appendConnectionLost(std::string &out)
{
    values::appendFrame(out, values::SetStateCommand,
                        [](std::string &payload) { payload.push_back(values::ValueStateConnectionLost); });
}
} // namespace

MirrorSession::MirrorSession(values::Tree &tree, const QString &path, const MirrorTiming &timing, const Outlet &outlet)
    : tree(tree), path(path), maximumBatchBytes(timing.maximumBatchBytes), writer(timing, outlet)
{
    tree.addListener(this->path.top(), this);
    startOver();
}

MirrorSession::~MirrorSession()
{
    tree.removeListener(this);
}

void MirrorSession::startOver()
{
    writer.drop(); // or the client would get it without what was before it
    paths.clearDirty();
    listed = 0;
    bool mayBeKnown = paths.last() != 0;
    const std::vector<values::TreeItem *> items = tree.subtree(path.top());
    paths.reserve(items.size());
    for (values::TreeItem *item : items) {
        const QString itemPath = item->GetPathName();
        mayBeKnown = mayBeKnown || (item->isNode() && tree.findValue(itemPath)); // both stand at one path
        const Place place = mayBeKnown ? paths.placeOf(itemPath) : paths.add(itemPath);
        if (!item->isNode() && !paths[place].value)
            paths.bind(place, static_cast<values::ValueBase *>(item));
        paths.makeDirty(place, item->isNode() ? nodePart : wholePart);
        listed += !std::exchange(paths[place].isListed, true);
    }
    snapshotBegins = true;
    inSnapshot = true;
    writer.wantFlush();
}

void MirrorSession::itemAdded(values::TreeItem &item, IObserver *originator)
{
    const Place place = paths.placeOf(item.GetPathName());
    if (!item.isNode()) {
        paths.bind(place, static_cast<values::ValueBase *>(&item));
        paths[place].isMadeByClient = originator == this;
        paths[place].isUnknown = false;
    }
    makeDirty(place, item.isNode() ? nodePart : wholePart);
}

void MirrorSession::itemRemoved(values::TreeItem &item, IObserver *)
{
    const Place place = item.isNode() ? paths.placeOf(item.GetPathName())
                                      : paths.find(static_cast<values::ValueBase *>(&item));
    if (!item.isNode())
        paths.unbind(place);
    makeDirty(place, item.isNode() ? nodePart : wholePart);
}

void MirrorSession::valueChanged(const values::ValueChange &change)
{
    if (change.originator == this)
        return; // the record that made it touches the path
    const Place place = paths.find(&change.value);
    if (!place)
        return;
    const Parts parts = partsOf(change);
    if (parts && change.value.isOptimized())
        return makeDirty(place, parts);
    event.clear();
    change.value.AddCommandForTransmission(change.code, change.forced, event);
    tellEvent(place, parts ? parts : wholePart);
}

void MirrorSession::commandRecorded(values::ValueBase &value, const values::ValueBase::CommandOnValue &command)
{
    const Place place = paths.find(&value);
    if (command.originator() == this || !place)
        return;
    event.clear();
    value.AddCommand(command, event);
    tellEvent(place, wholePart);
}

void MirrorSession::makeDirty(Place place, Parts parts)
{
    paths.makeDirty(place, parts);
    writer.wantFlush();
}

void MirrorSession::tellEvent(Place place, Parts merged)
{
    if (event.empty())
        return;
    // Whoever is told everything, or is far behind, gets it merged.
    if (inSnapshot || paths[place].isWithheld || !writer.hasRoomForEvents())
        return makeDirty(place, merged);
    writeDirty(false);
    if (!writer.write({.kind = RecordKind::Change, .number = numberOf(place), .frames = event}))
        makeDirty(place, wholePart);
    writer.wantFlush();
}

bool MirrorSession::flush()
{
    const bool isClean = writeDirty(true);
    return writer.flush() && isClean;
}

bool MirrorSession::writeDirty(bool onlyWithRoom)
{
    for (;;) {
        if (onlyWithRoom && !writer.hasRoom())
            return !inSnapshot && !paths.firstDirty() && appliedTold == applied;
        if (std::exchange(snapshotBegins, false))
            beginSnapshot();
        else if (std::exchange(appliedTold, applied) != applied)
            writer.write({.kind = RecordKind::Applied, .count = applied});
        else if (inSnapshot && listed == 0)
            endSnapshot();
        else if (const Place place = paths.firstDirty())
            write(place);
        else
            return true;
    }
}

void MirrorSession::beginSnapshot()
{
    writer.complete(); // the mark begins a batch, so that it is found when some before it are missing
    writer.write({.kind = RecordKind::SnapshotBegin, .count = applied});
    appliedTold = applied;
    for (const Place place : named)
        name(place);
}

void MirrorSession::endSnapshot()
{
    writer.write({.kind = RecordKind::SnapshotEnd});
    inSnapshot = false;
}

void MirrorSession::write(Place place)
{
    listed -= paths[place].isListed;
    const Parts parts = paths.takeDirty(place);
    if (parts & nodePart)
        writeNode(place);
    const bool isWhole = (parts & wholePart) || (parts && paths[place].isWithheld);
    if (isWhole)
        writeValue(place);
    const Parts forced = parts >> forcedShift & everyPart;
    const Parts changed = isWhole ? forced : parts & everyPart;
    if (changed && !paths[place].isWithheld)
        writeChange(place, changed | forced << forcedShift);
}

quint32 MirrorSession::numberOf(Place place)
{
    if (paths[place].number == 0) {
        name(place);
        named.push_back(place);
        paths[place].number = static_cast<quint32>(named.size());
    }
    return paths[place].number;
}

void MirrorSession::name(Place place)
{
    const QByteArray relative = path.relative(paths[place].path).value_or(QByteArray());
    writer.write({.kind = RecordKind::Path, .path = viewOf(relative)});
}

void MirrorSession::writeNode(Place place)
{
    const bool isThere = tree.findNode(paths[place].path);
    writer.write({.kind = isThere ? RecordKind::Node : RecordKind::NodeGone, .number = numberOf(place)});
}

void MirrorSession::writeValue(Place place)
{
    const values::ValueBase *const value = paths[place].value;
    const quint32 number = numberOf(place);
    if (!value) {
        writer.write({.kind = RecordKind::ValueGone, .number = number});
        return;
    }
    scratch.clear();
    value->AddObjectStateStringForTransmission(scratch);
    const QByteArray typeName = value->GetTypeName().toUtf8();
    Record record{.kind = RecordKind::Value, .number = number, .type = value->GetType(), .typeName = viewOf(typeName),
                  .frames = scratch};
    paths[place].isWithheld = !writer.write(record);
    if (!paths[place].isWithheld)
        return;
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("The content of %1 is too large for a client: %2 bytes")
            .arg(paths[place].path, QString::number(record.frames.size()));
    });
    scratch.clear();
    appendConnectionLost(scratch);
    record.frames = scratch;
    writer.write(record);
}

void MirrorSession::writeChange(Place place, Parts parts)
{
    const values::ValueBase *const value = paths[place].value;
    if (!value)
        return;
    scratch.clear();
    appendParts(*value, parts, scratch);
    if (scratch.empty())
        return;
    if (!writer.write({.kind = RecordKind::Change, .number = numberOf(place), .frames = scratch}))
        writeValue(place);
}
} // namespace mirror
