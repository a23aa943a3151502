#pragma once

#include "idl/korvemanager.hh"

#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

/// Writes down what it is told, as texts, and can be made to hang and to fail.
class Notes
{
public:
    void take(const std::string &text);
    std::vector<std::string> all();
    /// Waits, bounded, for that many.
    bool have(std::size_t count);

    void hang();
    void answer();
    void failFromNowOn();

private:
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> texts;
    bool hangs = false;
    bool fails = false;
};

/// A client that follows records: "DEVICE RECORD NAME STATUS".
class StateClient : public POA_TQ_KRV::IF_RecordStateChangeCallback
{
public:
    void NotifyStateChange(const char *deviceId, const char *recordId, const char *recordName,
                           TQ_KRV::eRECORD_STATUS status) override;
    Notes notes;
};

/// A client that follows storage: the XML.
class StorageClient : public POA_TQ_KRV::IF_KorveStatusCallback
{
public:
    void NotifyCStorageStatus(const char *deviceId, const char *statusXml) override;
    Notes notes;
};
