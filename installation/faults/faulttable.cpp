#include "installation/faults/faulttable.h"

namespace installation::faults
{

FaultTable::FaultTable(std::vector<CallFault> faults)
{
    for (CallFault &fault : faults)
        rows.push_back({std::move(fault)});
}

std::vector<CallFault> FaultTable::strikes(std::string_view role, std::string_view operation, Elapsed now)
{
    const std::scoped_lock lock(mutex);
    std::vector<CallFault> found;
    for (Row &row : rows) {
        if (!row.isFor(role, operation, now))
            continue;
        ++row.struck;
        found.push_back(row.fault);
        if (!std::holds_alternative<Delay>(row.fault.action))
            break;
    }
    return found;
}

bool FaultTable::Row::isFor(std::string_view role, std::string_view operation, Elapsed now) const
{
    return operation == fault.operation && (fault.role.empty() || fault.role == role) && fault.window.holds(now) &&
           (fault.times == 0 || struck < fault.times);
}

} // namespace installation::faults
