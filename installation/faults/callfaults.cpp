#include "installation/faults/callfaults.h"

#include "installation/faults/faulttable.h"
#include "installation/faults/roles.h"
#include "installation/faults/strike.h"

#include "coresupport/trace.h"

#include <omniORB4/CORBA.h>
#include <omniORB4/callDescriptor.h>
#include <omniORB4/omniInterceptors.h>

#include <atomic>
#include <condition_variable>

namespace installation::faults
{

namespace
{
constexpr const char *sourceName = "installation/faults/callfaults";
}

class CallFaults::Private
{
public:
    Private(std::vector<CallFault> faults, std::function<Elapsed()> clock)
        : table(std::move(faults)), clock(std::move(clock))
    {
    }

    void serve(omniCallDescriptor &call, omniServant &servant);
    void endDelays();

    /// The ORB's interceptors are plain functions. Shared, since calls may outlive us.
    static std::atomic<std::shared_ptr<Private>> active;
    static void intercept(omniCallDescriptor *call, omniServant *servant);

private:
    void wait(std::chrono::milliseconds delay);

    FaultTable table;
    const std::function<Elapsed()> clock;
    std::mutex mutex; // guards the next
    bool isEnding = false;
    std::condition_variable ended;
};

std::atomic<std::shared_ptr<CallFaults::Private>> CallFaults::Private::active;

void CallFaults::Private::intercept(omniCallDescriptor *call, omniServant *servant)
{
    if (const std::shared_ptr<Private> faults = active.load())
        faults->serve(*call, *servant);
    else
        call->interceptedCall(servant);
}

void CallFaults::Private::serve(omniCallDescriptor &call, omniServant &servant)
{
    for (const CallFault &fault : table.strikes(roleOfInterface(servant._mostDerivedRepoId()), call.op(), clock())) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("Fault strikes: %1").arg(QString::fromStdString(fault.origin)); });
        if (const auto *const delay = std::get_if<Delay>(&fault.action))
            wait(delay->duration);
        else
            return strike(fault.action, call, servant);
    }
    call.interceptedCall(&servant);
}

void CallFaults::Private::wait(std::chrono::milliseconds delay)
{
    std::unique_lock lock(mutex);
    ended.wait_for(lock, delay, [this] { return isEnding; });
}

void CallFaults::Private::endDelays()
{
    {
        const std::scoped_lock lock(mutex);
        isEnding = true;
    }
    ended.notify_all();
}

CallFaults::CallFaults(std::vector<CallFault> faults, std::function<Elapsed()> clock)
    : d(std::make_shared<Private>(std::move(faults), std::move(clock)))
{
    Private::active = d;
    static const bool isAdded = [] {
        omniORB::getInterceptors()->invokeLocalCall.add(&Private::intercept);
        return true;
    }();
    Q_UNUSED(isAdded)
}

CallFaults::~CallFaults()
{
    Private::active = std::shared_ptr<Private>();
    d->endDelays();
}

} // namespace installation::faults
