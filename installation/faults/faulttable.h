#pragma once

#include "installation/faults/faultscript.h"

#include <mutex>

namespace installation::faults
{

/// The faults of calls, and how often each of them may still strike.  Thread: any.
class FaultTable
{
public:
    explicit FaultTable(std::vector<CallFault> faults);

    /// What strikes a call that arrives now, in the order of the script, and counts it: delays, and behind them at most
    /// one fault that decides how the call ends.
    std::vector<CallFault> strikes(std::string_view role, std::string_view operation, Elapsed now);

private:
    struct Row {
        CallFault fault;
        unsigned struck = 0;

        bool isFor(std::string_view role, std::string_view operation, Elapsed now) const;
    };

    std::mutex mutex;
    std::vector<Row> rows;
};

} // namespace installation::faults
