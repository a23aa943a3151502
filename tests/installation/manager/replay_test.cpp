#include "tests/installation/manager/channelfixture.h"
#include "tests/support/waiting.h"

#include <QtTest/QTest>

#include <algorithm>

using namespace installation;

namespace
{

class Replay : public ChannelFixture
{
protected:
    bool positionPasses(const QString &id, quint64 position)
    {
        return QTest::qWaitFor([&] { return channel(id).progress.position > position; }, patienceMs);
    }
    /// Waits until the manager has looked so many times more.
    bool areTaken(int looks)
    {
        const auto taken = [this] { return std::ranges::count(recorder->trouble->calls(), "getCurrentFilePosition"); };
        const auto before = taken();
        return QTest::qWaitFor([&] { return taken() >= before + looks; }, patienceMs);
    }
};

} // namespace

TEST_F(Replay, SendsTheSectionToTheAddressOfTheChannel)
{
    const QString id = add(receiverChannel());
    EXPECT_EQ(startReplay(1000, 6000), 0u);
    EXPECT_TRUE(QTest::qWaitFor([&] { return receiver.bytes() == 5000; }, patienceMs));
    EXPECT_TRUE(becomes(id, State::Idle));
    EXPECT_EQ(recorder->record("R1")->statusNow(), TQ_KORVE::rsIDLE);
}

TEST_F(Replay, ShowsThePositionAsItMoves)
{
    const QString id = add(receiverChannel());
    ASSERT_EQ(startReplay(1000), 0u);
    EXPECT_EQ(channel(id).run.state, State::ReplayRunning);
    EXPECT_EQ(channel(id).run.recordId, QStringLiteral("R1"));
    ASSERT_TRUE(positionPasses(id, 1000));
    EXPECT_TRUE(positionPasses(id, channel(id).progress.position));
}

TEST_F(Replay, ShowsNothingOfTheReplayBefore)
{
    const QString id = add(receiverChannel());
    ASSERT_EQ(startReplay(500000), 0u);
    ASSERT_TRUE(positionPasses(id, 500000));
    ASSERT_EQ(replay()->StopReplay("REC1", "R1"), 0u);
    ASSERT_EQ(startReplay(1000, 6000), 0u);
    const quint64 position = channel(id).progress.position;
    EXPECT_GE(position, 1000u);
    EXPECT_LE(position, 6000u);
}

TEST_F(Replay, PausesAndContinues)
{
    const QString id = add(receiverChannel());
    ASSERT_EQ(startReplay(), 0u);
    EXPECT_EQ(replay()->PauseReplay("REC1", "R1"), 0u);
    EXPECT_EQ(channel(id).run.state, State::ReplayPaused);
    EXPECT_EQ(recorder->record("R1")->statusNow(), TQ_KORVE::rsREADY_FOR_REPLAY);
    EXPECT_EQ(replay()->ContinueReplay("REC1", "R1"), 0u);
    EXPECT_EQ(channel(id).run.state, State::ReplayRunning);
    const quint64 position = channel(id).progress.position;
    EXPECT_TRUE(positionPasses(id, position));
}

TEST_F(Replay, RepeatsAsOftenAsItIsTold)
{
    add(receiverChannel());
    EXPECT_EQ(startReplay(0, 1000, 3), 0u);
    EXPECT_TRUE(QTest::qWaitFor([&] { return receiver.bytes() == 3000; }, patienceMs));
    EXPECT_TRUE(becomesStatus("R1", TQ_KORVE::rsIDLE));
}

TEST_F(Replay, StopsAtOnce)
{
    const QString id = add(receiverChannel());
    ASSERT_EQ(startReplay(0, 1000, 0), 0u);
    EXPECT_EQ(replay()->StopReplay("REC1", "R1"), 0u);
    EXPECT_EQ(channel(id).run.state, State::Idle);
    EXPECT_EQ(recorder->record("R1")->statusNow(), TQ_KORVE::rsIDLE);
}

TEST_F(Replay, EndsWithAFaultWhenTheReceiverHangsUp)
{
    const QString id = add(receiverChannel());
    ASSERT_EQ(startReplay(), 0u);
    receiver.hangUp();
    EXPECT_TRUE(becomes(id, State::Idle));
    EXPECT_EQ(channel(id).error.code, 905u);
    EXPECT_EQ(recorder->record("R1")->statusNow(), TQ_KORVE::rsIDLE);
}

TEST_F(Replay, TakesTheChannelWithTheInterfaceThatIsWanted)
{
    add(receiverChannel());
    ChannelSettings settings = managerChannel();
    settings.interfaceType = TQ_KRV::UDP_IF;
    const QString id = add(settings);
    EXPECT_EQ(replay()->StartReplayReceivers("REC1", "R1", TQ_KRV::drHF_20k, 0, 1000000, 1, TQ_KRV::UDP_IF), 0u);
    EXPECT_EQ(channel(id).run.state, State::ReplayRunning);
}

TEST_F(Replay, LetsTheChannelManagerConnect)
{
    using testing::ElementsAre;
    add(managerChannel());
    ASSERT_EQ(startReplay(), 0u);
    EXPECT_THAT(peer->trouble.calls(), ElementsAre("isAvailableForReplay", "connectForReplay", "DataTransferStarted"));
    ASSERT_EQ(peer->connectedTo.size(), 1u);
    EXPECT_EQ(peer->connectedTo[0].interfaceType, TQ_KRV::TCP_IF);
    EXPECT_EQ(peer->connectedTo[0].address, 0x7f000001u);
    EXPECT_EQ(peer->connectedTo[0].port, 5000u);
    EXPECT_EQ(peer->connectedTo[0].parameter, 7u);
    EXPECT_EQ(replay()->StopReplay("REC1", "R1"), 0u);
    EXPECT_EQ(peer->trouble.calls().at(3), "stoppingDataTransfer");
    EXPECT_EQ(peer->trouble.calls().at(4), "disconnect");
}

TEST_F(Replay, LeavesTheXgInterfaceToTheChannelManager)
{
    ChannelSettings settings = managerChannel();
    settings.interfaceType = TQ_KRV::TQXG_IF;
    const QString id = add(settings);
    EXPECT_EQ(startReplay(), 0u);
    EXPECT_EQ(channel(id).run.state, State::ReplayRunning);
    EXPECT_EQ(replay()->PauseReplay("REC1", "R1"), 771u);
    EXPECT_EQ(replay()->StopReplay("REC1", "R1"), 0u);
    EXPECT_THAT(peer->trouble.calls(), testing::ElementsAre("startXgReplay", "stopXgReplay"));
}

TEST_F(Replay, OnTheXgInterfaceIsStoppedWhenNobodyKnowsWhetherItStarted)
{
    ChannelSettings settings = managerChannel();
    settings.interfaceType = TQ_KRV::TQXG_IF;
    add(settings);
    peer->trouble.plant("startXgReplay", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_MAYBE); });
    EXPECT_EQ(startReplay(), 770u);
    EXPECT_THAT(peer->trouble.calls(), testing::ElementsAre("startXgReplay", "stopXgReplay"));
}

TEST_F(Replay, StopsWithAChannelManagerThatHasGone)
{
    const QString id = add(managerChannel());
    ASSERT_EQ(startReplay(), 0u);
    peerActivation.reset();
    EXPECT_EQ(replay()->StopReplay("REC1", "R1"), 0u);
    EXPECT_EQ(channel(id).run.state, State::Idle);
}

TEST_F(Replay, GoesOnWhenTheRecorderCannotBeToldToStop)
{
    const QString id = add(receiverChannel());
    ASSERT_EQ(startReplay(0, 1000, 0), 0u);
    recorder->trouble->plant("endConnection", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_MAYBE); });
    EXPECT_THROW(replay()->StopReplay("REC1", "R1"), CORBA::COMM_FAILURE); // it may have been told
    EXPECT_TRUE(becomes(id, State::ReplayRunning));
    recorder->trouble->plant("endConnection", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO); });
    EXPECT_EQ(replay()->StopReplay("REC1", "R1"), 756u);
    EXPECT_EQ(channel(id).run.state, State::ReplayRunning);
    recorder->trouble->plant("endConnection", {});
    EXPECT_EQ(replay()->StopReplay("REC1", "R1"), 0u);
}

TEST_F(Replay, IsHalfStoppedWhenItsSessionCouldNotBeEnded)
{
    const QString id = add(receiverChannel());
    ASSERT_EQ(startReplay(0, 1000, 0), 0u);
    recorder->trouble->plant("endReplaySession", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO); });
    EXPECT_THROW(replay()->StopReplay("REC1", "R1"), CORBA::COMM_FAILURE); // a number would say that nothing was done
    ASSERT_TRUE(areTaken(3));
    EXPECT_EQ(channel(id).run.state, State::ReplayPaused); // no fault of the receiver's
    recorder->trouble->plant("endReplaySession", {});
    EXPECT_EQ(replay()->StopReplay("REC1", "R1"), 0u);
    EXPECT_EQ(channel(id).run.state, State::Idle);
    EXPECT_EQ(std::ranges::count(recorder->trouble->calls(), "endConnection"), 1); // there was no link any more
}

TEST_F(Replay, GoesOnWhenItWasNotPausedAfterAll)
{
    const QString id = add(receiverChannel());
    ASSERT_EQ(startReplay(0, 1000, 0), 0u);
    recorder->trouble->plant("stopDataTransfer", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_MAYBE); });
    EXPECT_THROW(replay()->PauseReplay("REC1", "R1"), CORBA::COMM_FAILURE);
    EXPECT_TRUE(becomes(id, State::ReplayRunning));
}

TEST_F(Replay, IsPausedWhenNobodyHeardOfThePause)
{
    const QString id = add(receiverChannel());
    ASSERT_EQ(startReplay(0, 1000, 0), 0u);
    recorder->trouble->plant("stopDataTransfer", [this] { // done, and not answered
        recorder->record("R1")->become(TQ_KORVE::rsREADY_FOR_REPLAY);
        throw CORBA::TRANSIENT(0, CORBA::COMPLETED_MAYBE);
    });
    EXPECT_THROW(replay()->PauseReplay("REC1", "R1"), CORBA::COMM_FAILURE);
    ASSERT_TRUE(areTaken(3));
    EXPECT_EQ(channel(id).run.state, State::ReplayPaused);
    EXPECT_EQ(replay()->ContinueReplay("REC1", "R1"), 0u);
}

TEST_F(Replay, HasNotStartedWhenItCouldBeTakenBack)
{
    const QString id = add(receiverChannel());
    recorder->trouble->plant("startDataTransfer", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_MAYBE); });
    EXPECT_EQ(startReplay(), 756u);
    EXPECT_EQ(recorder->record("R1")->statusNow(), TQ_KORVE::rsIDLE);
    recorder->trouble->plant("endReplaySession", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO); });
    EXPECT_THROW(startReplay(), CORBA::COMM_FAILURE);
    EXPECT_EQ(channel(id).run.state, State::Idle);
}

TEST_F(Replay, HasNotStartedWhenItsSessionIsEndedAndItsLinkIsNot)
{
    const QString id = add(receiverChannel());
    recorder->trouble->plant("startDataTransfer", [] { throw CORBA::TRANSIENT(0, CORBA::COMPLETED_MAYBE); });
    recorder->trouble->plant("endConnection", [] { throw LLDCmodule::exLLDC(LLDCmodule::ekDisconnectFailed, "stuck"); });
    EXPECT_EQ(startReplay(), 756u);
    EXPECT_EQ(recorder->record("R1")->statusNow(), TQ_KORVE::rsIDLE);
}

TEST_F(Replay, StopsWhatNoChannelKnowsOf)
{
    recorder->record("R1")->become(TQ_KORVE::rsREPLAYING);
    EXPECT_EQ(replay()->StopReplay("REC1", "R1"), 0u);
    EXPECT_EQ(recorder->record("R1")->statusNow(), TQ_KORVE::rsIDLE);
}

TEST_F(Replay, IsLookedAfterAgainWhenTheManagerHasStartedAgain)
{
    const QString id = add(receiverChannel());
    ASSERT_EQ(startReplay(), 0u);
    restartService();
    const quint64 position = channel(id).progress.position;
    EXPECT_TRUE(positionPasses(id, position));
    EXPECT_EQ(channel(id).progress.stopUs, 3000000u);
    EXPECT_EQ(replay()->PauseReplay("REC1", "R1"), 0u);
    restartService();
    EXPECT_TRUE(becomes(id, State::ReplayPaused));
    EXPECT_EQ(replay()->StopReplay("REC1", "R1"), 0u);
    EXPECT_EQ(recorder->record("R1")->statusNow(), TQ_KORVE::rsIDLE);
}

TEST_F(Replay, IsOverWhenTheRecorderHasForgottenItMeanwhile)
{
    const QString id = add(receiverChannel());
    ASSERT_EQ(startReplay(), 0u);
    service.reset();
    recorder->add("R1"); // idle
    startService();
    EXPECT_TRUE(becomes(id, State::Idle));
}
