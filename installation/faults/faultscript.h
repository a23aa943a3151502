#pragma once

#include "installation/faults/contract.h"
#include "installation/faults/systemexceptions.h"

#include <QString>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace installation::faults
{

/// Since the program was started.
using Elapsed = std::chrono::milliseconds;

/// From the begin, included, to the end, excluded; always, when nothing else is said.
struct TimeWindow {
    Elapsed begin{0};
    std::optional<Elapsed> end{};

    bool holds(Elapsed now) const { return now >= begin && (!end || now < *end); }
};

/// Nothing, so that what follows strikes later calls.
struct Pass {
};
struct Delay {
    std::chrono::milliseconds duration;
};
/// What a servant would have raised.
struct RaiseUser {
    const UserException *exception;
    unsigned kind;
    std::string text;
};
struct RaiseSystem {
    RaiseSystemException raise;
};
/// In place of the servant, which is not asked.
struct Answer {
    Result result; ///< what the operation returns
    unsigned number;
};
/// As kill -9: before the servant has been asked, or when it has answered and nobody has been told.
struct KillProcess {
    bool isAfterwards;
};
/// As kill -9, at a random moment of that time from the call's arrival on, while the servant works or after that.
struct KillSometime {
    std::chrono::milliseconds within;
};
using CallAction = std::variant<Pass, Delay, RaiseUser, RaiseSystem, Answer, KillProcess, KillSometime>;

struct CallFault {
    std::string role; ///< empty for all that have the operation
    std::string operation;
    CallAction action;
    TimeWindow window{};
    unsigned times = 0; ///< 0 for ever
    std::string origin; ///< the line, for traces
};

struct ProcessFault {
    Elapsed at;
    std::string role;
    std::optional<std::chrono::milliseconds> stopped{}; ///< for how long; killed without it
    std::string origin;
};

struct DiskFault {
    int error; ///< the `errno` that what is written fails with
    std::string device;
    TimeWindow window{};
};

/// What a fault script says; docs/faults.md has its grammar.
struct FaultScript {
    static constexpr std::size_t longestLine = 1000;
    static constexpr std::size_t mostLines = 10000;

    std::vector<CallFault> calls;
    std::vector<ProcessFault> processes;
    std::vector<DiskFault> disks;

    bool isEmpty() const { return calls.empty() && processes.empty() && disks.empty(); }

    /// @throws std::invalid_argument "NAME:LINE: reason" for the first line that is not understood.
    static FaultScript parsed(std::string_view text, const std::string &name);
    /// An empty @p path is no script. @throws std::invalid_argument also for a file that cannot be read.
    static FaultScript read(const QString &path);
};

} // namespace installation::faults
