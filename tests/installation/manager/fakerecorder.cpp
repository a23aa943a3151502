#include "tests/installation/manager/fakerecorder.h"

#include <algorithm>

namespace
{

constexpr CORBA::ULong recordRemoved = 1;

/// The records are called like their ids, with a letter that ASCII has not behind it.
const std::string nameEnding = "-\xc3\xa4";

TQ_KORVE::wideText wideName(const std::string &record)
{
    TQ_KORVE::wideText name;
    for (const char letter : record + "-\xe4") {
        name.length(name.length() + 1);
        name[name.length() - 1] = static_cast<unsigned char>(letter);
    }
    return name;
}

} // namespace

void FakeRecorder::announceNotificationReceiver(Receiver receiver)
{
    const std::scoped_lock lock(mutex);
    const bool isKnown =
        std::ranges::any_of(receivers, [&](const auto &known) { return known->_is_equivalent(receiver); });
    if (!isKnown)
        receivers.emplace_back(TQ_KORVE_IT::IF_Korve_IT::_duplicate(receiver));
}

void FakeRecorder::removeNotificationReceiver(Receiver receiver)
{
    const std::scoped_lock lock(mutex);
    std::erase_if(receivers, [&](const auto &known) { return known->_is_equivalent(receiver); });
}

TQ_KORVE::seqMETA_DATA *FakeRecorder::listAllRecordsEx3()
{
    const std::scoped_lock lock(mutex);
    TQ_KORVE::seqMETA_DATA_var list = new TQ_KORVE::seqMETA_DATA;
    for (const auto &[record, status] : records) {
        TQ_KORVE::struMETA_DATA metaData{};
        metaData.recordID = record.c_str();
        metaData.recordName = wideName(record);
        metaData.recordStatus = status;
        list->length(list->length() + 1);
        list[list->length() - 1] = metaData;
    }
    return list._retn();
}

TQ_KORVE::struMASS_STORE_STATUS *FakeRecorder::getMassStoreStatus()
{
    const std::scoped_lock lock(mutex);
    TQ_KORVE::struMASS_STORE_STATUS_var status = new TQ_KORVE::struMASS_STORE_STATUS;
    status->totalSize = 1000;
    status->freeSize = freeBytes;
    return status._retn();
}

char *FakeRecorder::getFirmwareVersion()
{
    return CORBA::string_dup("KRV#R100#1_1");
}

void FakeRecorder::setStatus(const std::string &record, TQ_KORVE::eRECORD_STATUS status)
{
    setStatusUntold(record, status);
    TQ_KORVE_IT::struSessionNotification notification{};
    notification.number = ++notifications;
    notification.sessionId = record.c_str();
    notification.notification = status;
    notification.recordId = record.c_str();
    notification.text = (record + nameEnding).c_str();
    for (const auto &receiver : receiversNow())
        receiver->processNotificationAboutSession(notification);
}

void FakeRecorder::setStatusUntold(const std::string &record, TQ_KORVE::eRECORD_STATUS status)
{
    const std::scoped_lock lock(mutex);
    records[record] = status;
}

void FakeRecorder::remove(const std::string &record)
{
    {
        const std::scoped_lock lock(mutex);
        records.erase(record);
    }
    TQ_KORVE_IT::struNotification notification{};
    notification.number = ++notifications;
    notification.notification = recordRemoved;
    notification.recordId = record.c_str();
    notification.text = (record + nameEnding).c_str();
    for (const auto &receiver : receiversNow())
        receiver->processNotification(notification);
}

void FakeRecorder::setFreeBytes(CORBA::ULongLong bytes)
{
    const std::scoped_lock lock(mutex);
    freeBytes = bytes;
}

void FakeRecorder::restart()
{
    const std::scoped_lock lock(mutex);
    receivers.clear();
}

std::size_t FakeRecorder::receiverCount()
{
    const std::scoped_lock lock(mutex);
    return receivers.size();
}

std::vector<TQ_KORVE_IT::IF_Korve_IT_var> FakeRecorder::receiversNow()
{
    const std::scoped_lock lock(mutex);
    return receivers;
}
