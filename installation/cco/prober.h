#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace installation
{

/// Asks outside things, round by round, whether they are still there. A silent one delays neither the others nor the
/// caller: a few threads share the work, and a target whose last probe is under way is left out of a round.
/// A probe must come to an end by itself.
class Prober
{
public:
    struct Target {
        std::string key;
        std::function<void()> probe; ///< runs on a thread of the prober
        std::string source{};        ///< who wants it asked; one of them never has all threads
    };
    /// Called on a thread of the prober at the beginning of each round.
    using Targets = std::function<std::vector<Target>()>;

    Prober(std::chrono::milliseconds interval, Targets targets);
    ~Prober();
    Prober(const Prober &) = delete;
    Prober &operator=(const Prober &) = delete;

    /// Begins with a round at once.
    void start();
    /// Makes the next round due now.
    void hurry();
    /// Waits for the probes under way.
    void stop();

private:
    void makeRounds();
    void schedule(std::vector<Target> targets);
    void work();
    std::deque<Target>::iterator nextTarget();

    const std::chrono::milliseconds interval;
    const Targets targets;
    std::mutex mutex; // guards the five members below; not held while anything is probed
    std::deque<Target> waiting;
    std::set<std::string> underWay; ///< waiting or being probed
    std::map<std::string, int> threadsOfSources; ///< that are probing for them
    bool hurried = false;
    bool stopping = false;
    std::condition_variable roundDue;
    std::condition_variable workDue;
    std::vector<std::thread> threads;
};

} // namespace installation
