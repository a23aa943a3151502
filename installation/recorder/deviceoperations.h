#pragma once

#include "installation/recorder/activities.h"
#include "installation/recorder/deviceclock.h"
#include "installation/recorder/filetransfers.h"
#include "installation/recorder/interruptedloops.h"
#include "installation/recorder/notifier.h"
#include "installation/recorder/recordcopier.h"
#include "installation/recorder/spectrumsender.h"

namespace installation::recorder
{

/// What a device does beside keeping its records and serving sessions: each part says for itself what.
///
/// A record that is copied, and the copy, are shown as such. Ends of copies and transfers are told to the receiver that
/// came with them; those of transfers, and of copies whose caller does not wait any more, to all who are announced.
/// Thread: any.  Errors: throws RecorderError.
class DeviceOperations
{
public:
    using Receiver = TQ_KORVE_IT::IF_Korve_IT_ptr;

    DeviceOperations(const std::shared_ptr<StoreThread> &store, std::shared_ptr<DeviceClock> deviceClock,
                     const std::shared_ptr<Activities> &activities, std::shared_ptr<Notifier> notifier);

    DeviceClock &clock() { return *deviceClock; }
    SpectrumSender &spectra() { return spectrumSender; }
    const FileTransfers &transfers() const { return fileTransfers; }

    /// See RecordCopier. @p receiver may be nil, here and below.
    QString copy(const QString &recordId, const QVector<FilePart> &parts, const QString &name, Receiver receiver);
    /// See FileTransfers.
    void startTransfer(const QString &recordId, const QString &url, Receiver receiver);
    void transfer(const QString &recordId, const QString &url);
    /// Asks all that goes on to end, and refuses more. Does not wait.
    void cancel();
    /// Asks as cancel() does, and waits until all has ended.
    void stop();

private:
    const std::shared_ptr<DeviceClock> deviceClock;
    const std::shared_ptr<Notifier> notifier;
    RecordCopier copier;
    SpectrumSender spectrumSender;
    FileTransfers fileTransfers;
    InterruptedLoops loops;
};

} // namespace installation::recorder
