#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

/// What happens to the operations of a fake, beside what they do: notes each, and raises what a test has planted.
class Trouble
{
public:
    /// @p raise throws, each time that @p operation is called from now on.
    void plant(const std::string &operation, std::function<void()> raise)
    {
        const std::scoped_lock lock(mutex);
        planted[operation] = std::move(raise);
    }
    /// To be called first by each operation.
    void meet(const std::string &operation)
    {
        std::function<void()> raise;
        {
            const std::scoped_lock lock(mutex);
            met.push_back(operation);
            const auto found = planted.find(operation);
            if (found != planted.end())
                raise = found->second;
        }
        if (raise)
            raise();
    }
    /// In the order of the calls.
    std::vector<std::string> calls() const
    {
        const std::scoped_lock lock(mutex);
        return met;
    }

private:
    mutable std::mutex mutex; // calls come from any thread
    std::map<std::string, std::function<void()>> planted;
    std::vector<std::string> met;
};
