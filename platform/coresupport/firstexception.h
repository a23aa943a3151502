#pragma once

#include <exception>
#include <utility>

/// Lets everything be done although some of it throws; the first exception reaches the caller afterwards.
class FirstException
{
public:
    template <typename Action> void attempt(const Action &action)
    {
        try {
            action();
        } catch (...) { // whatever it is, it is thrown again
            if (!first)
                first = std::current_exception();
        }
    }
    /// Throws what was caught first, if anything was.
    void rethrow()
    {
        if (first)
            std::rethrow_exception(std::exchange(first, nullptr));
    }

private:
    std::exception_ptr first;
};
