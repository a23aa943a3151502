#include "installation/recorder/reservedrecord.h"

#include "installation/recorder/recordererror.h"

#include "coresupport/trace.h"

#include <utility>

namespace installation::recorder
{

namespace
{
constexpr const char *sourceName = "installation/recorder/reservedrecord";
}

ReservedRecord::ReservedRecord(StoreThread &store)
    : store(store), reservation(store.ask([](RecordStore &records) { return records.reserve(); }))
{
}

ReservedRecord::~ReservedRecord()
{
    giveBack();
}

void ReservedRecord::giveBack()
{
    if (!std::exchange(isOpen, false))
        return;
    try {
        store.ask([id = reservation.id](RecordStore &records) { records.abandon(id); });
    } catch (const RecorderError &error) { // the next start of the store clears it away
        traceAt(TraceLevel::Normal, sourceName, [&] { return error.text(); });
    }
}

QString ReservedRecord::adopt(Record record)
{
    record.id = reservation.id;
    store.ask([record](RecordStore &records) { records.adopt(record); });
    isOpen = false;
    return record.id;
}

void requireRoom(StoreThread &store, quint64 sizeBytes)
{
    const RecordStore::Room room = store.ask([](RecordStore &records) { return records.room(); });
    if (sizeBytes > room.freeBytes)
        throw RecorderError(TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE,
                            QStringLiteral("%1 bytes are wanted and %2 are free")
                                .arg(QString::number(sizeBytes), QString::number(room.freeBytes)));
}

} // namespace installation::recorder
