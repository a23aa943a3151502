#include "benchmarks/support/require.h"

#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"

#include <benchmark/benchmark.h>

#include <QHash>

#include <algorithm>
#include <random>

using namespace values;

namespace
{

constexpr int valueCount = 100000;

/// Each call makes a text of its own, so that no comparison ends at the pointers.
QString pathOf(int number)
{
    return QStringLiteral("/SubSystems/North/KORVE/Device/HB145-%1/Channel/%2/Value%3")
        .arg(QString::number(number / 1000), QString::number(number / 10 % 100), QString::number(number % 10));
}

/// The same values, found by either side, and the order in which they are asked for.
struct Values {
    Tree tree;
    QHash<QString, ValueBase *> table;
    std::vector<QString> asked;

    Values()
    {
        for (int number = 0; number < valueCount; ++number) {
            const QString path = pathOf(number);
            auto value = std::make_unique<Value<QString>>();
            value->SetName(path.mid(path.lastIndexOf(u'/') + 1), nullptr);
            table.insert(pathOf(number), value.get());
            tree.addValue(path.left(path.lastIndexOf(u'/')), std::move(value));
            asked.push_back(pathOf(number));
        }
        std::shuffle(asked.begin(), asked.end(), std::mt19937(1));
        for (const QString &path : asked)
            require(table.value(path) && tree.findValue(path) == table.value(path), "both find the same value");
    }
};

const Values &values100000()
{
    static const Values values;
    return values;
}

template <typename Find> void findAll(benchmark::State &state, const Find &find)
{
    const std::vector<QString> &asked = values100000().asked;
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(find(asked[next]));
        next = next + 1 == asked.size() ? 0 : next + 1;
    }
}

void findOurs(benchmark::State &state)
{
    findAll(state, [&tree = values100000().tree](const QString &path) { return tree.findValue(path); });
}

void findFloor(benchmark::State &state)
{
    findAll(state, [&table = values100000().table](const QString &path) { return table.value(path); });
}

BENCHMARK(findOurs)->Name("tree.find/ours");
BENCHMARK(findFloor)->Name("tree.find/floor");

} // namespace
