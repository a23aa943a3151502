#include "installation/program/importservant.h"

#include <chrono>
#include <system_error>

using namespace std::chrono_literals;

namespace installation
{

namespace
{

using State = KORVE_INSTALLATION::struImportState;

[[noreturn]] void refuse(const QString &reason)
{
    throw KORVE_INSTALLATION::exImport(reason.toUtf8().constData());
}

} // namespace

/// One import, and the thread that does it.
class ImportServant::Job
{
public:
    Job(const Import &import, const QString &path)
        : thread([this, import, path](const std::stop_token &cancellation) { run(import, path, cancellation); })
    {
    }

    State *next()
    {
        std::unique_lock lock(mutex);
        progressed.wait_for(lock, 500ms, [this] { return isNews; });
        isNews = false;
        return new State(state);
    }
    void cancel() { thread.request_stop(); }
    /// Returns when the import has ended, whoever still asks for it.
    void end()
    {
        thread.request_stop();
        thread.join();
    }
    bool isFinished()
    {
        const std::scoped_lock lock(mutex);
        return state.finished;
    }

private:
    void run(const Import &import, const QString &path, const std::stop_token &cancellation)
    {
        const auto progress = [this](quint64 done, quint64 total) {
            note([&](State &now) { now.doneBytes = done, now.totalBytes = total; });
        };
        QByteArray recordId;
        QByteArray failure;
        try {
            recordId = import(path, {progress, cancellation}).toUtf8();
        } catch (const std::exception &error) {
            failure = error.what();
        }
        note([&](State &now) {
            now.finished = true;
            now.recordId = recordId.constData();
            now.failure = failure.constData();
        });
    }
    template <typename Change> void note(const Change &change)
    {
        {
            const std::scoped_lock lock(mutex);
            change(state);
            isNews = true;
        }
        progressed.notify_all();
    }

    std::mutex mutex; // guards `state` and `isNews`
    std::condition_variable progressed;
    State state{0, 0, false, "", ""};
    bool isNews = false;
    std::jthread thread; // last: it uses the others
};

ImportServant::~ImportServant() = default;

char *ImportServant::begin(const char *path)
{
    const QString file = QString::fromUtf8(path);
    if (!file.startsWith(u'/'))
        refuse(QStringLiteral("not an absolute path: %1").arg(file));
    const std::scoped_lock lock(mutex);
    forgetFinished();
    if (isStopped || jobs.size() >= mostAtATime)
        refuse(QStringLiteral("too many imports are running, or the recorder is about to end"));
    const std::string id = std::to_string(++lastNumber);
    try {
        jobs.emplace(id, std::make_shared<Job>(import, file));
    } catch (const std::system_error &error) { // no thread to be had
        refuse(QString::fromUtf8(error.what()));
    }
    return CORBA::string_dup(id.c_str());
}

State *ImportServant::await(const char *importId)
{
    const std::shared_ptr<Job> job = jobOf(importId);
    KORVE_INSTALLATION::struImportState_var state = job->next();
    if (state->finished) {
        const std::scoped_lock lock(mutex);
        jobs.erase(importId);
    }
    return state._retn();
}

void ImportServant::cancel(const char *importId)
{
    jobOf(importId)->cancel();
}

void ImportServant::stop()
{
    std::map<std::string, std::shared_ptr<Job>> last;
    {
        const std::scoped_lock lock(mutex);
        isStopped = true;
        last.swap(jobs);
    }
    for (const auto &[id, job] : last)
        job->end();
}

std::shared_ptr<ImportServant::Job> ImportServant::jobOf(const char *importId)
{
    const std::scoped_lock lock(mutex);
    const auto job = jobs.find(importId);
    if (job == jobs.end())
        refuse(QStringLiteral("no import %1 is running").arg(QString::fromUtf8(importId)));
    return job->second;
}

/// Those whose callers have not come back stay known only while there is room.
void ImportServant::forgetFinished()
{
    if (jobs.size() >= mostAtATime)
        std::erase_if(jobs, [](const auto &job) { return job.second->isFinished(); });
}

} // namespace installation
