#pragma once

#include "tests/installation/manager/emptycontrol.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

/// A recorder whose records only have a name and a status, and that tells of changes those who have announced
/// themselves. It forgets them when it restarts.
class FakeRecorder : public EmptyControl
{
public:
    void announceNotificationReceiver(Receiver receiver) override;
    void removeNotificationReceiver(Receiver receiver) override;
    TQ_KORVE::seqMETA_DATA *listAllRecordsEx3() override;
    TQ_KORVE::struMASS_STORE_STATUS *getMassStoreStatus() override;
    char *getFirmwareVersion() override;

    /// Makes the record if there is none; tells of it.
    void setStatus(const std::string &record, TQ_KORVE::eRECORD_STATUS status);
    /// The same, but nobody is told.
    void setStatusUntold(const std::string &record, TQ_KORVE::eRECORD_STATUS status);
    void remove(const std::string &record);
    void setFreeBytes(CORBA::ULongLong bytes);
    void restart() override;

    std::size_t receiverCount();

private:
    std::vector<TQ_KORVE_IT::IF_Korve_IT_var> receiversNow();

    std::mutex mutex; // guards what follows; not held during calls
    std::map<std::string, TQ_KORVE::eRECORD_STATUS> records;
    std::vector<TQ_KORVE_IT::IF_Korve_IT_var> receivers;
    CORBA::ULongLong freeBytes = 500;
    CORBA::ULongLong notifications = 0;
};
