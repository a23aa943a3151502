#pragma once

#include <QString>

#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>

namespace installation::recorder
{

/// Long work on threads of its own, so much at a time and no more.
///
/// Thread: any, but the work must not stop() it.
class Jobs
{
public:
    using Work = std::function<void(std::stop_token)>;

    /// The right to one piece of work, given back at the end of its life.
    class Place
    {
    public:
        Place(Place &&) = default;
        Place &operator=(Place &&) = default;

    private:
        friend class Jobs;
        explicit Place(std::shared_ptr<void> held) : held(std::move(held)) {}

        std::shared_ptr<void> held;
    };

    /// @p name is what the work is called in messages, such as "copies".
    Jobs(const QString &name, unsigned maximum);
    /// As stop().
    ~Jobs();
    Jobs(const Jobs &) = delete;

    /// @throws RecorderError: `ekRESSOURCES_EXHAUSTED` when all places are taken, and
    /// `ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE` after cancel().
    Place takePlace();
    /// Does @p work on a thread; what it throws is traced. Work that comes after cancel() is asked to end at once.
    /// @throws RecorderError (`ekPTHREAD_FAILURE`) when there is no thread to be had.
    void start(Place place, Work work);
    /// Asks all work to end, and gives no more places. Does not wait; there is no way back.
    void cancel() { stopSource.request_stop(); }
    /// As cancel(), and waits until all work has ended.
    void stop();
    std::stop_token stopToken() const { return stopSource.get_token(); }

private:
    struct Job;
    void joinFinished();
    void run(const Work &work);

    const QString name;
    const unsigned maximum;
    std::stop_source stopSource;
    std::mutex mutex; // guards the two members below
    std::shared_ptr<void> places = std::make_shared<int>(); ///< as many uses as there are places taken, and its own
    std::list<Job> jobs;
};

} // namespace installation::recorder
