#pragma once

#include "installation/recorder/recordstore.h"
#include "installation/recorder/storethread.h"

namespace installation::recorder
{

/// A place in the store for a record to come, which is given back unless a record was made of it.
///
/// Thread: any, one at a time.  Errors: throws RecorderError.
class ReservedRecord
{
public:
    explicit ReservedRecord(StoreThread &store);
    /// Clears away what was written for it.
    ~ReservedRecord();
    ReservedRecord(const ReservedRecord &) = delete;

    const QString &id() const { return reservation.id; }
    /// Where its samples are to be written.
    const QString &samplesPath() const { return reservation.samplesPath; }
    /// Makes @p record of the samples, which are on the disk, and returns its id.
    QString adopt(Record record);
    /// Clears away what was written for it, at once.
    void giveBack();

private:
    StoreThread &store;
    const RecordStore::Reservation reservation;
    bool isOpen = true;
};

/// @throws RecorderError (`ekNO_SPACE_LEFT_ON_DEVICE`) when the disk has fewer bytes than that.
void requireRoom(StoreThread &store, quint64 sizeBytes);

} // namespace installation::recorder
