#include "installation/calls/callqueue.h"

#include "coresupport/trace.h"

#include <omniORB4/CORBA.h>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/calls/callqueue";

constexpr int failuresUntilGivenUp = 3;

} // namespace

CallQueue::CallQueue()
{
    thread = std::thread(&CallQueue::run, this); // not before everything that it uses is there
}

CallQueue::~CallQueue()
{
    close();
    thread.join();
}

void CallQueue::add(Call call)
{
    const std::scoped_lock lock(mutex);
    if (calls.size() >= maximumCalls)
        calls.pop_front();
    calls.push_back(std::move(call));
    changed.notify_all();
}

void CallQueue::close()
{
    const std::scoped_lock lock(mutex);
    closed = true;
    changed.notify_all();
}

void CallQueue::finish()
{
    const std::scoped_lock lock(mutex);
    finishing = true;
    changed.notify_all();
}

void CallQueue::run()
{
    while (const auto call = next())
        if (!make(*call)) {
            failed = true;
            break;
        }
    done = true;
}

std::optional<CallQueue::Call> CallQueue::next()
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return closed || finishing || !calls.empty(); });
    if (closed || calls.empty())
        return std::nullopt;
    Call call = std::move(calls.front());
    calls.pop_front();
    return call;
}

bool CallQueue::make(const Call &call)
{
    try {
        call.make();
        failures = 0;
    } catch (const CORBA::OBJECT_NOT_EXIST &) {
        return false;
    } catch (const CORBA::Exception &e) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("A callback could not be told of %1: %2")
                .arg(QString::fromStdString(call.subject), QLatin1String(e._name()));
        });
        return ++failures < failuresUntilGivenUp;
    }
    return true;
}

} // namespace installation
