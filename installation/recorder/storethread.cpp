#include "installation/recorder/storethread.h"

#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordstore.h"

#include "coresupport/trace.h"

namespace installation::recorder
{

namespace
{
constexpr const char *sourceName = "installation/recorder/storethread";
}

StoreThread::StoreThread(const QString &path, std::chrono::milliseconds limit) : limit(limit)
{
    std::promise<void> opened;
    std::future<void> result = opened.get_future();
    thread = std::thread([this, path, opened = std::move(opened)]() mutable { run(path, opened); });
    try {
        result.get();
    } catch (...) {
        thread.join();
        throw;
    }
}

StoreThread::~StoreThread()
{
    stop();
}

void StoreThread::stop()
{
    {
        const std::lock_guard lock(mutex);
        stopped = true;
    }
    changed.notify_one();
    if (thread.joinable())
        thread.join();
}

std::shared_ptr<StoreRequest> StoreThread::post(std::function<void(RecordStore &)> work)
{
    const auto request = std::make_shared<StoreRequest>(std::move(work));
    {
        const std::lock_guard lock(mutex);
        if (stopped)
            throw RecorderError(TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE,
                                QStringLiteral("the recorder is ending"));
        if (waiting.size() >= maximumWaiting)
            throw RecorderError(TQ_KORVE::ekRESSOURCES_EXHAUSTED, QStringLiteral("too many requests are waiting"));
        waiting.push_back(request);
    }
    changed.notify_one();
    return request;
}

void StoreThread::tell(std::function<void(RecordStore &)> work)
{
    post([work = std::move(work)](RecordStore &store) {
        try {
            work(store);
        } catch (const RecorderError &error) {
            traceAt(TraceLevel::Normal, sourceName, [&] { return error.text(); });
        }
    });
}

void StoreThread::giveUp(StoreRequest &request)
{
    if (request.withdraw())
        throw RecorderError(TQ_KORVE::ekMASS_STORAGE_TOO_SLOW, QStringLiteral("the store is busy; nothing was done"));
    throw RecorderError(TQ_KORVE::ekMASS_STORAGE_TOO_SLOW,
                        QStringLiteral("the store takes long; what was asked may still be done"),
                        RecorderError::Outcome::Unknown);
}

void StoreThread::run(const QString &path, std::promise<void> &opened)
{
    std::unique_ptr<RecordStore> store;
    try {
        store = std::make_unique<RecordStore>(path);
    } catch (...) {
        opened.set_exception(std::current_exception());
        return;
    }
    opened.set_value();
    while (const auto request = next())
        request->run(*store);
}

/// Waits for it; null when there will be none.
std::shared_ptr<StoreRequest> StoreThread::next()
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return stopped || !waiting.empty(); });
    if (waiting.empty())
        return {};
    const auto request = waiting.front();
    waiting.pop_front();
    return request;
}

} // namespace installation::recorder
