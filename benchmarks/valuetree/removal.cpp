#include "benchmarks/support/require.h"

#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"

#include <benchmark/benchmark.h>

#include <vector>

using namespace values;

namespace
{

constexpr int valueCount = 50000;

/// The paths of values that stand in a new tree, so many of them in each node.
std::vector<QString> fill(Tree &tree, int valuesPerNode)
{
    std::vector<QString> paths;
    for (int number = 0; number < valueCount; ++number) {
        paths.push_back(QStringLiteral("/Device/%1/Value%2").arg(number / valuesPerNode).arg(number, 5, 10, QChar(u'0')));
        tree.addValueAt(paths.back(), std::make_unique<Value<int>>());
    }
    return paths;
}

/// Removes all values one by one, in the order in which they were added.
void removeAll(benchmark::State &state, int valuesPerNode)
{
    for (auto _ : state) {
        state.PauseTiming();
        Tree tree;
        const std::vector<QString> paths = fill(tree, valuesPerNode);
        int removed = 0;
        state.ResumeTiming();
        for (const QString &path : paths)
            removed += tree.removeValue(path);
        state.PauseTiming();
        require(removed == valueCount, "all values were there");
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * valueCount);
}

void removeOurs(benchmark::State &state)
{
    removeAll(state, valueCount);
}

/// Nodes so small that the order of their values costs nothing.
void removeFloor(benchmark::State &state)
{
    removeAll(state, 10);
}

BENCHMARK(removeOurs)->Name("tree.remove/ours");
BENCHMARK(removeFloor)->Name("tree.remove/floor");

} // namespace
