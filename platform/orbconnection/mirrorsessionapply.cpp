// What MirrorSession does with the client's records.
#include "orbconnection/mirrorsession.h"
#include "valuetreelib/commandframe.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"

namespace mirror
{
namespace
{
constexpr char sourceName[] = "orbconnection/mirrorsessionapply";
/// The echo of a shorter content costs less than the look whether it is needed.
constexpr std::size_t longFrames = 256;

bool refuse(const char *reason)
{
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("A client's batch is refused: %1").arg(QLatin1String(reason)); });
    return false;
}
} // namespace

bool MirrorSession::receive(std::string_view batch)
{
    if (batch.size() > maximumBatchBytes)
        return refuse("it is too long");
    values::ByteCursor in{batch.data(), batch.data() + batch.size()};
    const std::optional<quint64> sequence = readHeader(in);
    if (!sequence)
        return refuse("no header of this version");
    if (*sequence <= lastReceived)
        return true; // sent again, since its answer was lost
    if (*sequence != lastReceived + 1)
        return refuse("some before it are missing");
    lastReceived = *sequence;
    writer.wantFlush();
    for (; !in.isAtEnd(); ++applied) {
        const std::optional<Record> record = readRecord(in);
        if (!record || !apply(*record))
            return refuse("it is malformed");
    }
    return true;
}

bool MirrorSession::apply(const Record &record)
{
    if (record.kind == RecordKind::Path)
        return applyPath(record);
    if (record.number == 0 || record.number > clientNamed.size())
        return false;
    const Place place = clientNamed[record.number - 1];
    if (place && record.kind != RecordKind::NodeGone && paths[place].path == path.top())
        return true; // the value beside the mirrored node is not mirrored
    switch (record.kind) {
    case RecordKind::Value:
        applyValue(place, record);
        return true;
    case RecordKind::Set:
        applySet(place, record);
        return true;
    case RecordKind::ValueGone:
        applyValueGone(place);
        return true;
    case RecordKind::NodeGone:
        if (place)
            makeDirty(place, nodePart);
        return true;
    case RecordKind::SnapshotBegin:
    case RecordKind::SnapshotEnd:
    case RecordKind::Applied:
    case RecordKind::Path:
    case RecordKind::Node:
    case RecordKind::Change:
        return false; // only a server says so
    }
    return false;
}

bool MirrorSession::applyPath(const Record &record)
{
    const QString absolute = path.absolute(record.path);
    const bool canBe = values::Tree::canHold(absolute);
    if (!canBe)
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("A client's path is refused: %1").arg(absolute.left(200));
        });
    clientNamed.push_back(canBe ? paths.placeOf(absolute) : 0);
    return true;
}

void MirrorSession::applyValue(Place place, const Record &record)
{
    if (!place)
        return;
    const QString absolute = paths[place].path;
    if (!paths[place].value) {
        std::unique_ptr<values::ValueBase> value = makeValue(record, absolute, this);
        paths[place].isUnknown = !value;
        if (!value)
            return; // the client keeps what is not known here
        tellObservers(sourceName, [&] { tree.addValueAt(absolute, std::move(value), this); });
    }
    makeDirty(place, wholePart);
}

void MirrorSession::applySet(Place place, const Record &record)
{
    if (!place || paths[place].isUnknown)
        return;
    values::ByteCursor in{record.frames.data(), record.frames.data() + record.frames.size()};
    while (const std::optional<values::CommandFrame> frame = values::nextFrame(in)) {
        // Asked anew for each frame: observers may remove the value.
        values::ValueBase *const value = paths[place].value;
        if (value && value->GetType() == record.type)
            tellObservers(sourceName, [&] { value->SetCommandString(frame->command, frame->payload, this); });
    }
    if (!in.isAtEnd())
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("%1: a client's change is incomplete").arg(paths[place].path);
        });
    const bool isAsSaid = record.frames.size() >= longFrames && hasContent(place, record.frames);
    makeDirty(place, isAsSaid ? everyPart & ~contentPart : wholePart); // the rest may have been passed over there
}

void MirrorSession::applyValueGone(Place place)
{
    if (!place)
        return;
    const QString absolute = paths[place].path;
    if (paths[place].value && paths[place].isMadeByClient)
        tellObservers(sourceName, [&] { tree.removeValue(absolute, this); });
    paths[place].isUnknown = false;
    makeDirty(place, wholePart);
}

bool MirrorSession::hasContent(Place place, std::string_view frames)
{
    scratch.clear();
    if (const values::ValueBase *const value = paths[place].value)
        appendParts(*value, contentPart, scratch);
    return scratch == frames;
}
} // namespace mirror
