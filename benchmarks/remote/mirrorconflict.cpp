#include "benchmarks/remote/mirroredtree.h"
#include "benchmarks/remote/mixedcontent.h"
#include "benchmarks/remote/mixedvalues.h"
#include "benchmarks/remote/service.h"
#include "benchmarks/support/require.h"

#include "valuetreelib/tree.h"

#include <benchmark/benchmark.h>

using namespace values;

namespace
{

/// Has both sides change the same values at once; the other one is in serviceprogram.cpp.
class Conflict
{
public:
    /// Returns when each side knows what has become of all updates.
    void run()
    {
        const int begin = std::exchange(end, end + mixed::updatesPerRound / 2);
        process.tell("conflict " + QByteArray::number(begin) + ' ' + QByteArray::number(end));
        updates.begin(here + begin, here + end);
        waitFor([this] { return bothEnd->GetValue() == end; }, "both sides have made their updates");
    }
    void check()
    {
        process.tell("contents");
        require(process.readLine() == mixedValues.contents(), "both sides hold the same");
        for (int index = 0; index < mixed::valueCount; ++index) {
            const int last = mixed::lastUpdate(index, end);
            require(mixedValues.isAsSet(last) || mixedValues.isAsSet(here + last), "each value is as one side made it last");
        }
    }

private:
    /// The updates made here are those behind this one: their contents are others than the server's. It is an odd
    /// multiple, so that flags differ, too.
    static constexpr int here = 2000001 * mixed::valueCount;

    Value<int> *mark(const char *name) const
    {
        auto *const found = dynamic_cast<Value<int> *>(Tree::Instance().findValue(mirrorOf(path) + QLatin1String(name)));
        require(found, "the mark is mirrored");
        return found;
    }

    const QString path = QStringLiteral("/Conflict");
    const std::unique_ptr<VtConnectionObserver> mirror = mirrored(path);
    ServiceProcess &process = Service::instance().process();
    MixedValues mixedValues{mirrorOf(path) + QLatin1String("/Values")};
    Value<int> *const clientsEnd = mark("/ClientsEnd");
    const Value<int> *const bothEnd = mark("/BothEnd");
    SteadyUpdates updates{mixedValues, [this] { clientsEnd->SetValue(end, nullptr); }};
    int end = 0;
};

void conflict(benchmark::State &state)
{
    static Conflict &both = *new Conflict; // never destroyed: the ORB may end first
    both.run();
    both.check();
    while (state.KeepRunningBatch(mixed::updatesPerRound))
        both.run();
    both.check();
}

// Times are per update; the floor, whose updates one side alone makes, is in mirrorupdates.cpp.
BENCHMARK(conflict)->Name("mirror.conflict/ours")->UseRealTime();

} // namespace
