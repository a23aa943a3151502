#include "fuzz/support/require.h"
#include "installation/faults/faultscript.h"

#include <cstdint>
#include <stdexcept>

using namespace installation::faults;

namespace
{

constexpr std::chrono::hours longest{24};

void requireMeant(const TimeWindow &window)
{
    require(window.begin.count() >= 0 && window.begin <= longest);
    require(!window.end || (*window.end > window.begin && *window.end <= longest));
}

void requireMeant(const CallFault &fault)
{
    require(!fault.operation.empty());
    requireMeant(fault.window);
    if (const auto *const action = std::get_if<RaiseUser>(&fault.action))
        require(action->kind < action->exception->kinds.size() && action->text.find('\0') == std::string::npos);
    if (const auto *const action = std::get_if<RaiseSystem>(&fault.action))
        require(action->raise);
}

} // namespace

/// Reads a fault script.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    try {
        const FaultScript script = FaultScript::parsed({reinterpret_cast<const char *>(data), size}, "x");
        for (const CallFault &fault : script.calls)
            requireMeant(fault);
        for (const ProcessFault &fault : script.processes)
            require(!fault.role.empty() && fault.at <= longest);
        for (const DiskFault &fault : script.disks)
            requireMeant(fault.window);
    } catch (const std::invalid_argument &refusal) {
        require(std::string_view(refusal.what()).starts_with("x:"));
    }
    return 0;
}
