#include "installation/recorder/jobs.h"

#include "installation/recorder/brokenpipes.h"
#include "installation/recorder/recordererror.h"

#include "coresupport/trace.h"

#include <atomic>
#include <system_error>

namespace installation::recorder
{

namespace
{

constexpr const char *sourceName = "installation/recorder/jobs";

} // namespace

struct Jobs::Job {
    std::thread thread;
    std::atomic<bool> isDone = false;
};

Jobs::Jobs(const QString &name, unsigned maximum) : name(name), maximum(maximum) {}

Jobs::~Jobs()
{
    stop();
}

Jobs::Place Jobs::takePlace()
{
    const std::scoped_lock lock(mutex);
    if (stopSource.stop_requested())
        throw RecorderError(TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE,
                            QStringLiteral("the recorder is ending"));
    if (places.use_count() > maximum)
        throw RecorderError(TQ_KORVE::ekRESSOURCES_EXHAUSTED,
                            QStringLiteral("%1 %2 are going on, which is the most").arg(QString::number(maximum), name));
    return Place(places);
}

void Jobs::start(Place place, Work work)
{
    const std::scoped_lock lock(mutex);
    joinFinished();
    Job &job = jobs.emplace_back();
    try {
        job.thread = std::thread([this, &job, held = std::move(place), work = std::move(work)]() mutable {
            blockBrokenPipes();
            run(work);
            work = nullptr;
            held.held.reset(); // given back before the work counts as done
            job.isDone = true;
        });
    } catch (const std::system_error &error) {
        jobs.pop_back();
        throw RecorderError(TQ_KORVE::ekPTHREAD_FAILURE, QString::fromUtf8(error.what()));
    }
}

void Jobs::run(const Work &work)
{
    try {
        work(stopSource.get_token());
    } catch (const std::exception &error) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("%1: %2").arg(name, QString::fromUtf8(error.what())); });
    }
}

void Jobs::joinFinished()
{
    for (auto job = jobs.begin(); job != jobs.end();) {
        const bool isDone = job->isDone;
        if (isDone)
            job->thread.join();
        job = isDone ? jobs.erase(job) : std::next(job);
    }
}

void Jobs::stop()
{
    cancel();
    std::list<Job> ending;
    {
        const std::scoped_lock lock(mutex);
        ending.swap(jobs);
    }
    for (Job &job : ending)
        job.thread.join();
}

} // namespace installation::recorder
