#pragma once

#include "appruntime/appruntime_export.h"

#include <QString>

#include <functional>
#include <tuple>
#include <type_traits>
#include <utility>

namespace ThreadingHelper
{
/// A call that is to be made on the main thread: an object, one of its member functions, and copies of the arguments.
///
/// The arguments are converted to the function's parameter types at once, on the thread that makes the event. The
/// object is borrowed until the event has run or been dropped; give a `std::shared_ptr` to keep it alive.
class APPRUNTIME_EXPORT RunInMainThreadEvent
{
public:
    template <typename Object, typename Class, typename Result, typename... Parameters, typename... Arguments>
    RunInMainThreadEvent(Object object, Result (Class::*method)(Parameters...), Arguments &&...arguments)
        : call(bound<Parameters...>(std::move(object), method, std::forward<Arguments>(arguments)...))
    {
    }
    template <typename Object, typename Class, typename Result, typename... Parameters, typename... Arguments>
    RunInMainThreadEvent(Object object, Result (Class::*method)(Parameters...) const, Arguments &&...arguments)
        : call(bound<Parameters...>(std::move(object), method, std::forward<Arguments>(arguments)...))
    {
    }
    explicit RunInMainThreadEvent(std::function<void()> call) : call(std::move(call)) {}

    /// Makes the call. An exception ends here: it is traced with @p poster, the source that made the event.
    void run(const QString &poster) const noexcept;

private:
    template <typename... Parameters, typename Object, typename Method, typename... Arguments>
    static std::function<void()> bound(Object object, Method method, Arguments &&...arguments)
    {
        using Copies = std::tuple<std::decay_t<Parameters>...>;
        return [object = std::move(object), method, copies = Copies(std::forward<Arguments>(arguments)...)] {
            std::apply([&](const auto &...copy) { std::invoke(method, object, copy...); }, copies);
        };
    }

    std::function<void()> call;
};

/// The event of a member function with exactly three parameters.
class RunInMainThreadEvent3 : public RunInMainThreadEvent
{
public:
    template <typename Object, typename Class, typename Result, typename First, typename Second, typename Third,
              typename... Arguments>
    RunInMainThreadEvent3(Object object, Result (Class::*method)(First, Second, Third), Arguments &&...arguments)
        : RunInMainThreadEvent(std::move(object), method, std::forward<Arguments>(arguments)...)
    {
    }
};
} // namespace ThreadingHelper
