#include "installation/faults/strike.h"

#include "installation/faults/answers.h"

#include <omniORB4/CORBA.h>
#include <omniORB4/callDescriptor.h>

#include <csignal>
#include <cstdlib>
#include <random>
#include <thread>

namespace installation::faults
{

namespace
{

/// Ends the process as a loss of power does.
[[noreturn]] void die()
{
    ::raise(SIGKILL);
    std::abort(); // never reached
}

std::chrono::microseconds momentWithin(std::chrono::microseconds time)
{
    std::random_device random;
    return std::chrono::microseconds(std::uniform_int_distribution<std::int64_t>(0, time.count())(random));
}

class Strike
{
public:
    Strike(omniCallDescriptor &call, omniServant &servant) : call(call), servant(servant) {}

    void operator()(const Pass &) const { call.interceptedCall(&servant); }
    void operator()(const Delay &) const { call.interceptedCall(&servant); }
    void operator()(const RaiseUser &action) const { action.exception->raise(action.kind, action.text.c_str()); }
    void operator()(const RaiseSystem &action) const { action.raise(); }
    void operator()(const Answer &action) const { answer(call, action.result, action.number); }
    void operator()(const KillProcess &action) const
    {
        if (action.isAfterwards)
            serveToTheEnd();
        die();
    }
    void operator()(const KillSometime &action) const
    {
        std::thread([moment = momentWithin(action.within)] {
            std::this_thread::sleep_for(moment);
            die();
        }).detach();
        call.interceptedCall(&servant);
    }

private:
    void serveToTheEnd() const
    {
        try {
            call.interceptedCall(&servant);
        } catch (const CORBA::Exception &) { // of which nobody gets to know either
        }
    }

    omniCallDescriptor &call;
    omniServant &servant;
};

} // namespace

void strike(const CallAction &action, omniCallDescriptor &call, omniServant &servant)
{
    std::visit(Strike(call, servant), action);
}

} // namespace installation::faults
