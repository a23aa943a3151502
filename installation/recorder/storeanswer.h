#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace installation::recorder
{

/// What work has returned, or thrown, on its way to another thread.
///
/// Whoever takes it has it alone. A future would share what was thrown, and the last of two threads to let go of that
/// would be the one that destroys it: behind a counter in the standard library that no thread sanitizer sees.
template <typename Result> class StoreAnswer
{
public:
    template <typename Work, typename... Arguments> static StoreAnswer of(Work &work, Arguments &...arguments)
    {
        StoreAnswer answer;
        try {
            if constexpr (std::is_void_v<Result>)
                std::invoke(work, arguments...);
            else
                answer.result.emplace(std::invoke(work, arguments...));
        } catch (...) {
            answer.thrown = std::current_exception();
        }
        return answer; // the thread is out of the handler and holds nothing of its own
    }

    /// Returns it, or throws it; once.
    Result take()
    {
        if (thrown)
            std::rethrow_exception(std::exchange(thrown, nullptr));
        if constexpr (!std::is_void_v<Result>)
            return std::move(*result);
    }

private:
    std::optional<std::conditional_t<std::is_void_v<Result>, std::monostate, Result>> result;
    std::exception_ptr thrown;
};

} // namespace installation::recorder
