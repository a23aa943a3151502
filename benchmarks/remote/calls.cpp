#include "benchmarks/remote/onecpu.h"
#include "benchmarks/remote/service.h"
#include "benchmarks/support/require.h"

#include "connectionmanagement/hmiserverconnectiondata.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "korvebase/corbatoclientconverter.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

using KORVE_XML::KORVE_RecordData;
using KorveCommon::HMIServerConnectionData;
using KorveGUI::KorveGuiToServerCorbaHandler;

namespace
{

using Records = QVector<KORVE_RecordData>;

constexpr int recordCount = 10000;
constexpr char many[] = "many";
constexpr char none[] = "none";

/// A display station that has found the manager of the other process, and the same manager without a handler.
struct Station {
    Station()
    {
        Service::instance();
        station = std::make_shared<HMIServerConnectionData>(QString());
        handler = std::make_unique<KorveGuiToServerCorbaHandler>(QString(), station, QString());
        waitFor([this] { return handler->IsConnected(); }, "the handler finds the manager");
        manager = handler->GetKorveInterface();
        check();
    }

    void check() const
    {
        Records records;
        Records converted;
        require(handler->getAllRecords(QLatin1String(many), records) == 0, "the handler gets the records");
        const TQ_KRV::seqRECORD_DATA_var sequence = manager->getAllRecords(many);
        require(sequence->length() == recordCount, "the bare call gets as many");
        KorveCommon::CorbaToClientConverter::convertRecords(sequence.in(), converted);
        require(records == converted && records.last().GetBookmarkEntry().size() == 5, "both get the same records");
        require(handler->getAllRecords(QLatin1String(none), records) == 0 && records.size() == recordCount,
                "the small call succeeds");
    }

    std::shared_ptr<HMIServerConnectionData> station;
    std::unique_ptr<KorveGuiToServerCorbaHandler> handler;
    TQ_KRV::IF_KRV_c_KRV_var manager;
};

Station &station()
{
    // Never destroyed: the ORB may end first.
    static Station &station = *new Station;
    return station;
}

void recordsOurs(benchmark::State &state)
{
    const QString device = QLatin1String(many);
    KorveGuiToServerCorbaHandler &handler = *station().handler;
    for (auto _ : state) {
        Records records;
        state.SetIterationTime(secondsOf([&] { handler.getAllRecords(device, records); }));
    }
}

void recordsFloor(benchmark::State &state)
{
    TQ_KRV::IF_KRV_c_KRV_ptr manager = station().manager;
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

BENCHMARK(recordsOurs)->Name("corba.getallrecords/ours")->UseManualTime();
BENCHMARK(recordsFloor)->Name("corba.getallrecords/floor")->UseManualTime();
BENCHMARK(smallOurs)->Name("corba.small/ours")->UseRealTime();
BENCHMARK(smallFloor)->Name("corba.small/floor")->UseRealTime();

} // namespace
