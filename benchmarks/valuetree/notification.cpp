#include "benchmarks/support/require.h"

#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"

#include <benchmark/benchmark.h>

#include <array>

using namespace values;

namespace
{

constexpr std::size_t observerCount = 16;

struct Counter : IObserver {
    std::uint64_t updates = 0;
    void Update(Observable *, TChangeCode code) override { updates += code == ChangeCodeValue; }
};

/// A value of a tree with observers; times are per observer.
struct Observed {
    Tree tree;
    Value<int> *value = new Value<int>;
    std::array<Counter, observerCount> counters;

    Observed()
    {
        value->SetName(QStringLiteral("Value"), nullptr);
        tree.addValue(QStringLiteral("/Node"), std::unique_ptr<ValueBase>(value));
        for (Counter &counter : counters)
            value->AddObserver(&counter);
    }
    ~Observed() { value->DeleteObservers(); }
    void check(std::uint64_t rounds) const
    {
        for (const Counter &counter : counters)
            require(counter.updates == rounds, "each observer is told each time");
    }
};

void notifyOurs(benchmark::State &state)
{
    Observed observed;
    std::uint64_t rounds = 0;
    while (state.KeepRunningBatch(observerCount)) {
        observed.value->NotifyObservers(ChangeCodeValue, nullptr);
        ++rounds;
    }
    observed.check(rounds);
}

void notifyFloor(benchmark::State &state)
{
    Observed observed;
    std::vector<IObserver *> observers;
    for (Counter &counter : observed.counters)
        observers.push_back(&counter);
    benchmark::DoNotOptimize(observers.data());
    std::uint64_t rounds = 0;
    while (state.KeepRunningBatch(observerCount)) {
        for (IObserver *observer : observers)
            observer->Update(observed.value, ChangeCodeValue);
        ++rounds;
    }
    observed.check(rounds);
}

BENCHMARK(notifyOurs)->Name("tree.notify/ours");
BENCHMARK(notifyFloor)->Name("tree.notify/floor");

} // namespace
