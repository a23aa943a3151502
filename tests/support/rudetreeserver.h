#pragma once

#include <chrono>
#include <memory>
#include <vector>

/// A tree server that misbehaves as it is told, at the key "ValueTree" of the ORB for as long as this lives.
///
/// Thread: made on the main thread; the rest any.
class RudeTreeServer
{
public:
    enum class Manner {
        Honest,         ///< one value, "State" = "honest", and then silence
        OtherVersion,   ///< does not speak the client's version
        EndsSessions,   ///< at the first call in each
        NeverCompletes, ///< begins a snapshot, and then waits
        SaysNothing,    ///< and that at once
        EmptyBatches,   ///< not even a header is in them
        BatchTooLong,
        SkipsNumbers,   ///< after a whole snapshot, and gives no other
        LosesBatches,   ///< all but snapshots: the first one, and each that it is asked for
        Malformed,      ///< after a whole snapshot
        HugeLength,     ///< of a text in a snapshot that has only a few bytes
        Hangs,          ///< does not return while it has this manner
        HangsInOpen,
    };
    using Clock = std::chrono::steady_clock;

    explicit RudeTreeServer(Manner manner);
    RudeTreeServer(const RudeTreeServer &) = delete;
    ~RudeTreeServer();

    void behave(Manner manner);
    /// When clients have opened sessions.
    std::vector<Clock::time_point> opened() const;
    int pullCount() const;
    /// How many of the pulls came from a client that had no room.
    int pullCountWithoutRoom() const;
    int resynchronisationCount() const;

    /// What a client may take; BatchTooLong sends more.
    static constexpr std::size_t tooManyBytes = 5000;

private:
    class Conduct;
    class Servant;

    const std::shared_ptr<Conduct> conduct;
};
