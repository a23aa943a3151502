#include "installation/faults/faults.h"

#include "installation/faults/diskfaults.h"
#include "installation/faults/processpause.h"

#include "coresupport/trace.h"

#include <csignal>
#include <system_error>

namespace installation::faults
{

namespace
{

using Event = FaultSchedule::Event;
using Start = std::chrono::steady_clock::time_point;

constexpr const char *sourceName = "installation/faults/faults";

std::function<Elapsed()> clockFrom(Start start)
{
    return [start] { return std::chrono::duration_cast<Elapsed>(std::chrono::steady_clock::now() - start); };
}

void pause(std::chrono::milliseconds duration)
{
    try {
        standStill(duration);
    } catch (const std::system_error &error) {
        traceAt(TraceLevel::Normal, sourceName, [&] { return QString::fromUtf8(error.what()); });
    }
}

void strike(const ProcessFault &fault)
{
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("Fault strikes: %1").arg(QString::fromStdString(fault.origin)); });
    if (fault.stopped)
        pause(*fault.stopped);
    else
        ::raise(SIGKILL);
}

std::vector<Event> eventsFor(const FaultScript &script, const FaultySide &side)
{
    std::vector<Event> events = diskEvents(script.disks, side.device, side.setDiskError);
    for (const ProcessFault &fault : script.processes)
        if (side.roles.contains(fault.role))
            events.push_back({fault.at, [fault] { strike(fault); }});
    return events;
}

} // namespace

Faults::Faults(const FaultScript &script, const FaultySide &side, Start start)
    : calls(script.calls, clockFrom(start)), schedule(eventsFor(script, side), start)
{
}

} // namespace installation::faults
