#pragma once

#include "installation/recorder/record.h"

#include <stop_token>

namespace installation::recorder
{

class RecordStore;
class StoreThread;

/// How far a recording is, and how the receiver was set. Positions are those of the file while it is written.
struct RecordingProgress {
    quint64 begin = 0; ///< of what is kept
    quint64 end = 0;
    quint64 nowUs = 0;
    /// From where on, and since when, samples came with which frequency and rate (0: their times are those of the clock
    /// alone); one for each link, ascending, the first not behind the begin. None before the first sample.
    QVector<IndexEntry> settings;
};

/// What the store knows of a recording.
///
/// Until it is closed it is stored as a recording of what is on the disk for certain, so that the end of the process at
/// any moment leaves a record of that.
/// Thread: one, remark() any; waits for the store thread.  Errors: throws RecorderError.
class RecordingBook
{
public:
    RecordingBook(StoreThread &store, QString recordId) : store(store), recordId(std::move(recordId)) {}

    /// These samples are on the disk.
    void note(const RecordingProgress &progress);
    /// Nothing follows. Puts a loop in order; @p remarks become entries of the history.
    void close(const RecordingProgress &progress, const QStringList &remarks);
    /// One more entry of the history, at any time.
    void remark(const Note &note);

private:
    StoreThread &store;
    const QString recordId;
};

/// Closes the recording @p record of a process that has ended; on the store's thread. False, with nothing done, for a loop
/// whose samples are still to be put in order.
bool closeRecordingInOrder(RecordStore &records, const RecordSummary &record);
/// Puts such a loop in order and closes it; waits for the store thread. When it is cancelled the next call goes on.
/// @throws RecorderError.
void closeLoop(StoreThread &store, const RecordSummary &loop, const std::stop_token &cancellation);

} // namespace installation::recorder
