#pragma once

#include "installation/faults/faultscript.h"

#include <functional>
#include <memory>

namespace installation::faults
{

/// Has the faults of a script strike the calls that the servants of this process get, from others and from each other.
///
/// An interceptor of the ORB stands between it and the servants, which know nothing of it. What it raises goes the way
/// of what a servant raises: an exception that the operation does not declare ends as `CORBA::UNKNOWN`. At most one at
/// a time; it needs an ORB. Calls that are under way when it goes end as was decided for them, but without the rest of a
/// delay.  Thread: any.
class CallFaults
{
public:
    /// @p clock tells how long the program has run.
    CallFaults(std::vector<CallFault> faults, std::function<Elapsed()> clock);
    /// Ends the delays that are under way.
    ~CallFaults();
    CallFaults(const CallFaults &) = delete;

private:
    class Private;
    const std::shared_ptr<Private> d;
};

} // namespace installation::faults
