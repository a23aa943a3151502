#pragma once

#include "installation/recorder/jobs.h"
#include "installation/recorder/outgoingconnection.h"
#include "installation/recorder/recordfolder.h"
#include "installation/recorder/transfertarget.h"

#include <functional>
#include <memory>

namespace installation::recorder
{

class StoreThread;

/// Sends files of records to who listens for them, at most maximumTransfers at once.
///
/// A file is sent as it is when it is opened, whatever becomes of the record meanwhile; the connection is closed behind
/// its last byte.
/// Thread: any.  Errors: throws RecorderError.
class FileTransfers
{
public:
    static constexpr unsigned maximumTransfers = 8;

    /// Told on any thread; @p failure is empty when the receiver has the file.
    using Ended = std::function<void(const QString &failure)>;

    explicit FileTransfers(std::shared_ptr<StoreThread> store, const OutgoingConnection::Timing &timing = {});

    /// The files of the record in "export:RECORDID". For "sending:RECORDID" those that are being sent, by their targets
    /// and the bytes that are to be sent; each until its end has been told.
    QVector<RecordFile> list(const QString &archiveDevice) const;
    /// Connects to the target in @p url, and sends the file of the record from there on a thread of its own.
    void start(const QString &recordId, const QString &url, const Ended &ended);
    /// Sends as start() does, and waits for the end.
    void send(const QString &recordId, const QString &url);
    /// See Jobs.
    void cancel() { jobs.cancel(); }
    /// Ends what is being sent, and waits until it has.
    void stop() { jobs.stop(); }

private:
    class UnderWay;
    struct Transfer;
    std::shared_ptr<Transfer> open(const QString &recordId, const TransferTarget &target) const;

    const std::shared_ptr<StoreThread> store;
    const OutgoingConnection::Timing timing;
    const std::shared_ptr<UnderWay> underWay;
    Jobs jobs;
};

} // namespace installation::recorder
