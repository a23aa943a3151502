#include "benchmarks/support/require.h"

#include "korvebase/recordidentifierlist.h"

#include <benchmark/benchmark.h>

#include <QSet>

#include <limits>
#include <malloc.h>

using korve::RecordIdentifier;
using korve::RecordIdentifierList;

namespace
{

constexpr int listSize = 100000;
constexpr int deviceCount = 50;

/// Each call makes texts of its own, so that no comparison ends at the pointers.
RecordIdentifierList identifiers(int firstNumber)
{
    RecordIdentifierList list;
    list.reserve(listSize);
    for (int number = firstNumber; number < firstNumber + listSize; ++number)
        list.append(RecordIdentifier(QStringLiteral("North"), QStringLiteral("HB145-%1").arg(number % deviceCount),
                                     QStringLiteral("2026-11-21T10:15:30-%1").arg(number, 6, 10, QChar(u'0'))));
    return list;
}

/// Both lists are made once, so that neither lies scattered in the memory that others have given back.
struct Lists {
    /// What has been freed stays with the process, or the figure of either side is now and then that of page faults.
    Lists()
    {
        require(mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max()), "freed memory is kept");
        require(mallopt(M_MMAP_THRESHOLD, 32 << 20 /* the greatest */), "large blocks are kept");
    }

    RecordIdentifierList known = identifiers(0);
    /// None of its identifiers is known yet: each is looked for, and each is appended.
    const RecordIdentifierList added = identifiers(listSize);
};

Lists &lists()
{
    static Lists both;
    return both;
}

void addListOurs(benchmark::State &state)
{
    auto &[list, added] = lists();
    for (auto _ : state) {
        list.add(added);
        state.PauseTiming();
        require(list.size() == 2 * listSize && list.last() == added.last(), "all are added");
        list.erase(list.begin() + listSize, list.end());
        state.ResumeTiming();
    }
}

/// The set holds those that are added, no others.
void addListFloor(benchmark::State &state)
{
    const RecordIdentifierList &added = lists().added;
    for (auto _ : state) {
        QSet<RecordIdentifier> set;
        set.reserve(listSize);
        for (const RecordIdentifier &identifier : added)
            set.insert(identifier);
        state.PauseTiming();
        require(set.size() == listSize, "all are in the set");
        set.clear();
        state.ResumeTiming();
    }
}

BENCHMARK(addListOurs)->Name("ids.addlist/ours");
BENCHMARK(addListFloor)->Name("ids.addlist/floor");

} // namespace
