#pragma once

#include <atomic>
#include <functional>

namespace installation::recorder
{

class RecordStore;

/// Something to do with the store. Whoever wants it done may withdraw it until it has begun.
class StoreRequest
{
public:
    explicit StoreRequest(std::function<void(RecordStore &)> work) : work(std::move(work)) {}

    /// Does the work, unless it was withdrawn.
    void run(RecordStore &store)
    {
        State expected = State::Waiting;
        if (state.compare_exchange_strong(expected, State::Begun))
            work(store);
    }
    /// False when it is too late.
    bool withdraw()
    {
        State expected = State::Waiting;
        return state.compare_exchange_strong(expected, State::Withdrawn);
    }

private:
    enum class State { Waiting, Begun, Withdrawn };

    const std::function<void(RecordStore &)> work;
    std::atomic<State> state = State::Waiting;
};

} // namespace installation::recorder
