#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

/// Calls of many kinds to one service at once: each kind again and again, on a thread of its own.
class ServiceLoad
{
public:
    struct Kind {
        std::string name;
        std::function<void()> call; ///< one or several calls; fails by raising a CORBA::Exception
    };

    explicit ServiceLoad(const std::vector<Kind> &kinds);
    /// As finish().
    ~ServiceLoad();
    ServiceLoad(const ServiceLoad &) = delete;

    /// Waits, bounded, until each kind has been answered, and then for so many answers more.
    bool isUnderWay(int moreAnswers) const;
    /// The kinds that have not been answered.
    std::string unanswered() const;
    /// The service is to end now: a kind is over when it is not answered any more.
    void expectTheEnd() { isEnding = true; }
    /// Waits for the calls in progress.
    void finish();

private:
    struct Caller {
        Kind kind;
        std::atomic<int> answers = 0;
        std::thread thread{};
    };

    void run(Caller &caller);
    int answers() const;

    std::atomic<bool> isEnding = false;
    std::atomic<bool> isOver = false;
    std::vector<std::unique_ptr<Caller>> callers;
};
