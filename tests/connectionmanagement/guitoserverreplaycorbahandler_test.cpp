#include "connectionmanagement/guitoserverreplaycorbahandler.h"

#include "tests/appruntime/capturedtraces.h"
#include "tests/connectionmanagement/fakecommands.h"
#include "tests/connectionmanagement/handlerfixture.h"
#include "tests/connectionmanagement/keyedservant.h"

using namespace KorveGUI;
using KORVE_XML::KORVE_RecordData;
using KORVE_XML::NetIfParams;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Commands = GuiToServerReplayCorbaHandler;

namespace
{
const QString d1 = QStringLiteral("D1");
const QString d2 = QStringLiteral("D2");
const QString r1 = QStringLiteral("R1");

/// Connected, without an interface as yet.
class ReplayHandler : public HandlerFixture
{
protected:
    ReplayHandler() { upAll(); }

    const std::shared_ptr<Handler> handler = std::make_shared<Handler>(alpha, station, QString());
    KeyedServant<FakeReplay> replay{"replay D1"};
    KeyedServant<FakeReplay> otherReplay{"replay D2"};
    Commands commands{handler};
};

struct ReplayCommand {
    const char *name;
    std::function<unsigned long(Commands &)> give;
    const char *arrives;
};

const ReplayCommand commandRows[] = {
    {"StartReplay",
     [](Commands &c) { return c.StartReplay(d2, r1, KORVE_RecordData::VUHF_20M, 8, 1ull << 63, 3); },
     "StartReplay D2 R1 3 8 9223372036854775808 3"},
    {"StartReplay",
     [](Commands &c) { return c.StartReplay(d2, r1, KORVE_RecordData::HF_20k, 0, 8, 0, NetIfParams::UDP_IF); },
     "StartReplayReceivers D2 R1 0 0 8 0 1"},
    {"PauseReplay", [](Commands &c) { return c.PauseReplay(d2, r1); }, "PauseReplay D2 R1"},
    {"ContinueReplay", [](Commands &c) { return c.ContinueReplay(d2, r1); }, "ContinueReplay D2 R1"},
    {"StopReplay", [](Commands &c) { return c.StopReplay(d2, r1); }, "StopReplay D2 R1"},
};

void PrintTo(const ReplayCommand &command, std::ostream *out)
{
    *out << command.arrives;
}

class ReplayHandlersCommand : public ReplayHandler, public testing::WithParamInterface<ReplayCommand>
{
protected:
    unsigned long give() { return GetParam().give(commands); }
    /// The device traced is that of Initialize(), although the command is for another.
    std::string failure(const char *exception) const
    {
        return std::string(GetParam().name) + " for Channel 'D1' failed with exception: " + exception;
    }
};

TEST_P(ReplayHandlersCommand, ArrivesThroughTheInterfaceOfTheDeviceThatWasInitialized)
{
    ASSERT_TRUE(commands.Initialize(d1));
    EXPECT_EQ(give(), 0u);
    EXPECT_THAT(replay->calls, ElementsAre(GetParam().arrives));
    EXPECT_THAT(otherReplay->calls, IsEmpty());
}

TEST_P(ReplayHandlersCommand, AnswersTheManagersNumber)
{
    ASSERT_TRUE(commands.Initialize(d1));
    replay->number = 768;
    EXPECT_EQ(give(), 768u);
    EXPECT_FALSE(commands.OutcomeIsUnknown());
}

TEST_P(ReplayHandlersCommand, TracesAFailureForTheDeviceThatWasInitialized)
{
    ASSERT_TRUE(commands.Initialize(d1));
    CapturedTraces traces(32);
    replay->trouble = [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO); };
    EXPECT_EQ(give(), 210u);
    EXPECT_FALSE(commands.OutcomeIsUnknown());
    replay->trouble = [] { throw CORBA::COMM_FAILURE(0, CORBA::COMPLETED_MAYBE); };
    EXPECT_EQ(give(), 211u);
    EXPECT_TRUE(commands.OutcomeIsUnknown());
    EXPECT_THAT(take(traces), ElementsAre(failure("TRANSIENT"), failure("COMM_FAILURE")));
    replay->trouble = [] {};
    EXPECT_EQ(give(), 0u);
    EXPECT_FALSE(commands.OutcomeIsUnknown()); // it speaks of the last command alone
}

TEST_P(ReplayHandlersCommand, AsksNobodyWithoutADevice)
{
    ASSERT_TRUE(handler->IsConnected());
    manager.calls.clear();
    CapturedTraces traces(32);
    EXPECT_EQ(give(), 101u);
    EXPECT_THAT(manager.calls, IsEmpty());
    EXPECT_THAT(take(traces), IsEmpty());
}

TEST_P(ReplayHandlersCommand, ConnectsByItselfWhenADeviceWasGivenBefore)
{
    handler->Shutdown();
    unregisterManager();
    EXPECT_FALSE(commands.Initialize(d1));
    EXPECT_EQ(give(), 101u);
    registerManager();
    EXPECT_EQ(give(), 0u);
    EXPECT_THAT(replay->calls, ElementsAre(GetParam().arrives));
}

INSTANTIATE_TEST_SUITE_P(Commands, ReplayHandlersCommand, testing::ValuesIn(commandRows), [](const auto &info) {
    const std::string arrives = info.param.arrives;
    return "Of" + arrives.substr(0, arrives.find(' '));
});

TEST_F(ReplayHandler, FetchesItsInterfaceAnewWhenTheConnectionOfItsSubsystemChanges)
{
    ASSERT_TRUE(commands.Initialize(d1));
    manager.calls.clear();
    Q_EMIT station->ConnectionChanged(west);
    EXPECT_THAT(manager.calls, IsEmpty());
    handler->Shutdown(); // so that the interface that it keeps is not the answer
    Q_EMIT station->ConnectionChanged(alpha);
    EXPECT_EQ(manager.calls.back(), "getKorveReplayInterface D1");
    EXPECT_EQ(commands.PauseReplay(d1, r1), 0u);
}

TEST_F(ReplayHandler, LetsGoOfAnInterfaceThatItCannotFetchAnew)
{
    ASSERT_TRUE(commands.Initialize(d1));
    handler->Shutdown();
    unregisterManager();
    Q_EMIT station->ConnectionChanged(alpha);
    EXPECT_EQ(commands.StopReplay(d1, r1), 101u);
    EXPECT_THAT(replay->calls, IsEmpty());
}

TEST_F(ReplayHandler, RemembersTheDeviceAlsoWhenItHasNoInterface)
{
    EXPECT_FALSE(commands.Initialize(QString()));
    EXPECT_TRUE(commands.Initialize(d2));
    EXPECT_EQ(commands.StopReplay(d1, r1), 0u);
    EXPECT_THAT(otherReplay->calls, ElementsAre("StopReplay D1 R1"));
}

TEST_F(ReplayHandler, IsNotAvailableWhileTheManagerHandsOutNothing)
{
    manager.handsOut = false;
    EXPECT_FALSE(commands.Initialize(d1));
    EXPECT_EQ(commands.StopReplay(d1, r1), 101u);
    manager.handsOut = true;
    EXPECT_EQ(commands.StopReplay(d1, r1), 0u);
    EXPECT_THAT(replay->calls, ElementsAre("StopReplay D1 R1"));
}

TEST_F(ReplayHandler, ConvertsNothingBeforeThereIsAnInterface)
{
    const auto noneOfTheManagers = static_cast<KORVE_RecordData::DataRate>(4);
    CapturedTraces traces(32);
    EXPECT_EQ(commands.StartReplay(d1, r1, noneOfTheManagers, 0, 8, 1), 101u);
    EXPECT_THAT(take(traces), IsEmpty());
    ASSERT_TRUE(commands.Initialize(d1));
    EXPECT_EQ(commands.StartReplay(d1, r1, noneOfTheManagers, 0, 8, 1), 0u);
    EXPECT_THAT(take(traces), ElementsAre(HasSubstr("invalid datarateclass 4")));
}

TEST_F(ReplayHandler, SendsIdentifiersInLatin1)
{
    ASSERT_TRUE(commands.Initialize(d1));
    EXPECT_EQ(commands.PauseReplay(QString::fromUtf8("Dä"), QString::fromUtf8("R€")), 0u);
    EXPECT_THAT(replay->calls, ElementsAre("PauseReplay D\xe4 R?"));
}
} // namespace
