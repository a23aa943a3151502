#include "benchmarks/remote/onecpu.h"
#include "benchmarks/remote/station.h"
#include "benchmarks/support/require.h"

#include "korvebase/corbatoclientconverter.h"

#include <benchmark/benchmark.h>

using KORVE_XML::KORVE_RecordData;
using KorveGUI::KorveGuiToServerCorbaHandler;

namespace
{

using Records = QVector<KORVE_RecordData>;

constexpr int recordCount = 10000;
constexpr char many[] = "many";
constexpr char none[] = "none";

void check(Station &station)
{
    Records records;
    Records converted;
    require(station.handler->getAllRecords(QLatin1String(many), records) == 0, "the handler gets the records");
    const TQ_KRV::seqRECORD_DATA_var sequence = station.manager->getAllRecords(many);
    require(sequence->length() == recordCount, "the bare call gets as many");
    KorveCommon::CorbaToClientConverter::convertRecords(sequence.in(), converted);
    require(records == converted && records.last().GetBookmarkEntry().size() == 5, "both get the same records");
    require(station.handler->getAllRecords(QLatin1String(none), records) == 0 && records.size() == recordCount,
            "the small call succeeds");
}

Station &station()
{
    static const bool checked = (check(Station::instance()), true);
    Q_UNUSED(checked)
    return Station::instance();
}

void recordsOurs(benchmark::State &state)
{
    const QString device = QLatin1String(many);
    KorveGuiToServerCorbaHandler &handler = *station().handler;
    const OneCpuEach pinned(Service::instance().processes());
    for (auto _ : state) {
        Records records;
        state.SetIterationTime(secondsOf([&] { handler.getAllRecords(device, records); }));
    }
}

void recordsFloor(benchmark::State &state)
{
    TQ_KRV::IF_KRV_c_KRV_ptr manager = station().manager;
    const OneCpuEach pinned(Service::instance().processes());
    for (auto _ : state) {
        TQ_KRV::seqRECORD_DATA_var sequence;
        state.SetIterationTime(secondsOf([&] { sequence = manager->getAllRecords(many); }));
    }
}

void smallOurs(benchmark::State &state)
{
    const QString device = QLatin1String(none);
    KorveGuiToServerCorbaHandler &handler = *station().handler;
    const OneCpu pinned(Service::instance().processes());
    Records records;
    for (auto _ : state)
        handler.getAllRecords(device, records);
}

void smallFloor(benchmark::State &state)
{
    TQ_KRV::IF_KRV_c_KRV_ptr manager = station().manager;
    const OneCpu pinned(Service::instance().processes());
    for (auto _ : state)
        const TQ_KRV::seqRECORD_DATA_var sequence = manager->getAllRecords(none);
}

// A call takes tens of milliseconds: the usual time of a round holds too few of them, the first on cold memory.
constexpr double warmUpSeconds = 0.1;
constexpr double roundSeconds = 0.5;

BENCHMARK(recordsOurs)
    ->Name("corba.getallrecords/ours")
    ->UseManualTime()
    ->MinWarmUpTime(warmUpSeconds)
    ->MinTime(roundSeconds);
BENCHMARK(recordsFloor)
    ->Name("corba.getallrecords/floor")
    ->UseManualTime()
    ->MinWarmUpTime(warmUpSeconds)
    ->MinTime(roundSeconds);
BENCHMARK(smallOurs)->Name("corba.small/ours")->UseRealTime();
BENCHMARK(smallFloor)->Name("corba.small/floor")->UseRealTime();

} // namespace
