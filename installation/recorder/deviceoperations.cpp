#include "installation/recorder/deviceoperations.h"

namespace installation::recorder
{

namespace
{

using Change = Notifier::Change;
using Receiver = DeviceOperations::Receiver;
using ReceiverVar = TQ_KORVE_IT::IF_Korve_IT_var;
using KORVE_XML::KORVE_RecordData;

/// Both records are shown as being copied while the answer lives.
RecordCopier::Claim claimBy(std::shared_ptr<Activities> activities)
{
    return [activities = std::move(activities)](const Record &source, const QString &copyId) {
        using Both = std::pair<std::unique_ptr<Activity>, std::unique_ptr<Activity>>;
        auto claimed = std::make_shared<Both>();
        claimed->first = activities->begin(source.id, source.name, KORVE_RecordData::COPYING);
        claimed->second = activities->begin(copyId, source.name, KORVE_RecordData::COPYING);
        return claimed;
    };
}

/// Tells all who are announced, and the one who asked for it.
void tellOfTransfer(Notifier &notifier, Receiver receiver, const QString &recordId, const QString &failure)
{
    const Change change = failure.isEmpty() ? Change::TransferFinished : Change::TransferFailed;
    notifier.tellChange(change, recordId, failure);
    notifier.tellOne(receiver, change, recordId, failure);
}

} // namespace

DeviceOperations::DeviceOperations(const std::shared_ptr<StoreThread> &store, std::shared_ptr<DeviceClock> deviceClock,
                                   const std::shared_ptr<Activities> &activities, std::shared_ptr<Notifier> notifier)
    : deviceClock(std::move(deviceClock)), notifier(std::move(notifier)),
      copier(store, *this->deviceClock, claimBy(activities)), spectrumSender(store), fileTransfers(store),
      loops(store, *activities)
{
}

QString DeviceOperations::copy(const QString &recordId, const QVector<FilePart> &parts, const QString &name,
                               Receiver receiver)
{
    const ReceiverVar asking = TQ_KORVE_IT::IF_Korve_IT::_duplicate(receiver);
    return copier.copy(recordId, parts, name,
                       [notifier = notifier, asking, name](const QString &copyId, const QString &failure) {
                           if (failure.isEmpty()) // which all others have heard from the store
                               notifier->tellOne(asking, Change::Added, copyId, name);
                           else
                               tellOfTransfer(*notifier, asking, copyId, failure);
                       });
}

void DeviceOperations::startTransfer(const QString &recordId, const QString &url, Receiver receiver)
{
    const ReceiverVar asking = TQ_KORVE_IT::IF_Korve_IT::_duplicate(receiver);
    fileTransfers.start(recordId, url, [notifier = notifier, asking, recordId](const QString &failure) {
        tellOfTransfer(*notifier, asking, recordId, failure);
    });
}

void DeviceOperations::transfer(const QString &recordId, const QString &url)
{
    fileTransfers.send(recordId, url);
}

void DeviceOperations::cancel()
{
    copier.cancel();
    spectrumSender.cancel();
    fileTransfers.cancel();
}

void DeviceOperations::stop()
{
    copier.stop();
    spectrumSender.stop();
    fileTransfers.stop();
    loops.stop();
}

} // namespace installation::recorder
