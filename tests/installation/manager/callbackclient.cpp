#include "tests/installation/manager/callbackclient.h"

using namespace std::chrono_literals;

void Notes::take(const std::string &text)
{
    std::unique_lock lock(mutex);
    texts.push_back(text);
    changed.notify_all();
    changed.wait(lock, [this] { return !hangs; });
    if (fails)
        throw CORBA::UNKNOWN(0, CORBA::COMPLETED_NO);
}

std::vector<std::string> Notes::all()
{
    const std::scoped_lock lock(mutex);
    return texts;
}

bool Notes::have(std::size_t count)
{
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, 20s, [&] { return texts.size() >= count; });
}

void Notes::hang()
{
    const std::scoped_lock lock(mutex);
    hangs = true;
}

void Notes::answer()
{
    const std::scoped_lock lock(mutex);
    hangs = false;
    changed.notify_all();
}

void Notes::failFromNowOn()
{
    const std::scoped_lock lock(mutex);
    fails = true;
}

void StateClient::NotifyStateChange(const char *deviceId, const char *recordId, const char *recordName,
                                    TQ_KRV::eRECORD_STATUS status)
{
    notes.take(std::string(deviceId) + " " + recordId + " " + recordName + " " + std::to_string(status));
}

void StorageClient::NotifyCStorageStatus(const char *, const char *statusXml)
{
    notes.take(statusXml);
}
