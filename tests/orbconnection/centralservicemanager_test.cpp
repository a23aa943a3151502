#include "orbconnection/centralservicemanager.h"

#include "tests/orbconnection/livecentralservice.h"
#include "tests/support/connectioncounter.h"
#include "tests/support/outage.h"

#include <QSignalSpy>

using namespace CorbaCommon;
using namespace std::chrono_literals;

namespace
{
class NameWatched : public LiveCentralService
{
protected:
    static constexpr const char *name = "KorveManager/VTConnect";

    NameWatched() : cco(direct()) {}

    void put(const char *value) { cco->RegisterValues(name, sequenceOf({value}), 0); }
    void take() { cco->UnregisterValues(name, 0); }
    bool isNextSignal(bool available)
    {
        ++expected;
        return comesTrue([&] { return told.count() >= expected; }) && told.count() == expected &&
               told.last().at(0).toBool() == available && told.last().at(1).toString() == QLatin1String(name);
    }

    const CCO::IF_CCO_c_var cco;
    CentralServiceManager manager{QLatin1String(name), {.missesUntilGone = 2, .poll = 50ms}};
    QSignalSpy told{&manager, &CentralServiceManager::si_notifyServerAvailablity};
    int expected = 0;
};

TEST_F(NameWatched, IsToldOnlyFromTheEventLoop)
{
    put("one");
    EXPECT_EQ(told.count(), 0);
    EXPECT_TRUE(isNextSignal(true));
}

TEST_F(NameWatched, TellsEachEdgeOnce)
{
    put("one");
    ASSERT_TRUE(isNextSignal(true));
    put("one");
    take();
    ASSERT_TRUE(isNextSignal(false));
    put("one");
    EXPECT_TRUE(isNextSignal(true));
}

TEST_F(NameWatched, TellsOfOtherValuesAgain)
{
    put("one");
    ASSERT_TRUE(isNextSignal(true));
    put("two");
    EXPECT_TRUE(isNextSignal(true));
}

TEST_F(NameWatched, MayBeAnObject)
{
    cco->Register(name, cco, 0);
    ASSERT_TRUE(isNextSignal(true));
    const CORBA::Object_var taken = cco->Unregister(name, 0);
    EXPECT_TRUE(isNextSignal(false));
}

TEST_F(NameWatched, KeepsItsStateWhileTheServiceIsAway)
{
    put("one");
    ASSERT_TRUE(isNextSignal(true));
    killService();
    {
        ConnectionCounter looks(address().toLatin1().constData(), OrbSettings::centralServicePort);
        ASSERT_TRUE(comesTrue([&] { return looks.count() > 20; })); // a look tries it some times
    }
    EXPECT_EQ(told.count(), 1);
    startService();
    ASSERT_TRUE(isNextSignal(false)); // the new service knows nothing
    put("one");
    EXPECT_TRUE(isNextSignal(true));
}

TEST_F(LiveCentralService, IsPolledWithTheProductionPace)
{
    CentralServiceManager manager(QStringLiteral("A/B"), 2, 500);
    QSignalSpy told(&manager, &CentralServiceManager::si_notifyServerAvailablity);
    const CCO::IF_CCO_c_var cco = direct();
    cco->RegisterValues("A/B", sequenceOf({"x"}), 0);
    EXPECT_TRUE(comesTrue([&] { return told.count() == 1; }));
}

/// Polls so rarely that only the service's own word can be the reason.
TEST_F(LiveCentralService, WordOfARestartIsPassedOnAlthoughTheValuesAreTheSame)
{
    const CCO::IF_CCO_c_var cco = direct();
    cco->RegisterValues("A/B", sequenceOf({"x"}), 0);
    CentralServiceManager manager(QStringLiteral("A/B"), {.missesUntilGone = 2, .poll = 10min});
    QSignalSpy told(&manager, &CentralServiceManager::si_notifyServerAvailablity);
    ASSERT_TRUE(comesTrue([&] { return told.count() == 1; }));
    cco->UnregisterValues("A/B", 0);
    cco->RegisterValues("A/B", sequenceOf({"x"}), 0);
    ASSERT_TRUE(comesTrue([&] { return told.count() == 2; }));
    EXPECT_TRUE(told.last().at(0).toBool());
}

TEST_F(LiveCentralService, MayBeSilentWhenAWatcherGoes)
{
    auto manager = std::make_unique<CentralServiceManager>(QStringLiteral("A/B"), 2, 20);
    const Outage outage(service());
    manager.reset();
    EXPECT_TRUE(outage.lasts());
}
} // namespace
