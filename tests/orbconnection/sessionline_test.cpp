#include "orbconnection/mirrorwire.h"
#include "orbconnection/treeservant.h"
#include "tests/appruntime/capturedtraces.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
/// The main thread, too busy to do what it is asked.
class BusyKeeper : public mirror::ISessionKeeper
{
public:
    void beginNew() override { asked.push_back("begin"); }
    void receive(quint64, std::string) override { asked.push_back("receive"); }
    void resynchronise(quint64) override { asked.push_back("resynchronise"); }
    void flush() override { asked.push_back("flush"); }
    void end(quint64) override { asked.push_back("end"); }
    std::vector<std::string> asked;
};

class ASessionLine : public testing::Test
{
protected:
    ASessionLine()
    {
        gate->takeNew();
        keeper->asked.clear();
    }
    static MirrorTiming timing()
    {
        MirrorTiming timing;
        timing.heartbeat = std::chrono::milliseconds(4);
        timing.queueBytes = 1000;
        timing.maximumBatchBytes = 2000;
        return timing;
    }
    std::chrono::steady_clock::time_point now;
    const std::shared_ptr<mirror::SessionGate> gate =
        std::make_shared<mirror::SessionGate>(timing(), [this] { return now; });
    const std::shared_ptr<BusyKeeper> keeper = std::make_shared<BusyKeeper>();
    mirror::TreeServant servant{timing(), gate, keeper};
    const quint64 session = servant.open("/K", mirror::protocolVersion);
    const std::shared_ptr<mirror::SessionLine> line = gate->line(session);
};

TEST_F(ASessionLine, KeepsABatchForAClientThatHasRoom)
{
    line->outbox.put(1, "batch");
    const VALUETREE::Delivery_var without = servant.pull(session, 0, false);
    EXPECT_EQ(without->number, 0u);
    const VALUETREE::Delivery_var with = servant.pull(session, 0, true);
    EXPECT_EQ(with->number, 1u);
}

TEST_F(ASessionLine, AsksForOneSnapshotAtATime)
{
    for (int i = 0; i < 3; ++i)
        servant.resynchronise(session);
    EXPECT_THAT(keeper->asked, ElementsAre("resynchronise"));
    line->snapshotAsked = false; // done
    servant.resynchronise(session);
    EXPECT_THAT(keeper->asked, ElementsAre("resynchronise", "resynchronise"));
}

TEST_F(ASessionLine, OfAnotherVersionIsRefusedInASentence)
{
    const CapturedTraces traces;
    EXPECT_THROW(servant.open("/K", 1), VALUETREE::VersionNotSupported);
    EXPECT_TRUE(traces.contain("A client speaks version 1 of the mirror, this is version 2"));
}

TEST_F(ASessionLine, TakesNoMoreSmallBatchesThanItHasRoomFor)
{
    VALUETREE::Batch batch;
    batch.length(mirror::batchHeaderBytes);
    int taken = 0;
    while (taken < 100 && servant.push(session, 1, batch))
        ++taken;
    EXPECT_EQ(taken, 4);
    EXPECT_EQ(keeper->asked.size(), 4u);
}

TEST_F(ASessionLine, TakesNoMoreThanAllHaveRoomForAlsoWhenSessionsComeAndGo)
{
    VALUETREE::Batch batch;
    batch.length(1000);
    std::size_t taken = 0;
    for (int i = 0; i < 100; ++i) {
        const CORBA::ULongLong another = servant.open("/K", mirror::protocolVersion);
        taken += servant.push(another, 1, batch);
        servant.close(another);
    }
    EXPECT_EQ(taken, 4u); // the fourth goes beyond 4000
    gate->release(mirror::countedBytes(1000));
    EXPECT_TRUE(servant.push(session, 1, batch));
}

TEST_F(ASessionLine, EndsWithWhatIsTooShortOrTooLongForABatch)
{
    for (const std::size_t size : {std::size_t(0), mirror::batchHeaderBytes - 1, std::size_t(2001)}) {
        const CORBA::ULongLong another = servant.open("/K", mirror::protocolVersion);
        gate->takeNew();
        keeper->asked.clear();
        VALUETREE::Batch batch;
        batch.length(static_cast<CORBA::ULong>(size));
        EXPECT_THROW(servant.push(another, 1, batch), CORBA::BAD_PARAM);
        EXPECT_THAT(keeper->asked, ElementsAre("end"));
        EXPECT_THROW(servant.push(another, 1, batch), VALUETREE::SessionUnknown);
    }
}

TEST_F(ASessionLine, ThatEndsBeforeItIsTakenLeavesNothingToDo)
{
    for (int i = 0; i < 3; ++i)
        servant.close(servant.open("/K", mirror::protocolVersion));
    EXPECT_THAT(keeper->asked, ElementsAre("begin", "begin", "begin")); // of which a keeper posts one
    EXPECT_TRUE(gate->takeNew().empty());
}

TEST_F(ASessionLine, IsOneOfNotTooMany)
{
    for (std::size_t i = 1; i < mirror::SessionGate::maximumSessions; ++i)
        servant.open("/K", mirror::protocolVersion);
    EXPECT_THROW(servant.open("/K", mirror::protocolVersion), CORBA::NO_RESOURCES);
    servant.close(session);
    EXPECT_NO_THROW(servant.open("/K", mirror::protocolVersion));
}

TEST_F(ASessionLine, IsOneOfNotTooManyOfOneAddress)
{
    std::vector<quint64> sessions;
    for (std::size_t i = 0; i < mirror::SessionGate::maximumSessions / 4; ++i)
        sessions.push_back(gate->open(QStringLiteral("/K"), "10.0.0.1"));
    EXPECT_THAT(sessions, testing::Not(testing::Contains(0u)));
    EXPECT_EQ(gate->open(QStringLiteral("/K"), "10.0.0.1"), 0u);
    EXPECT_NE(gate->open(QStringLiteral("/K"), "10.0.0.2"), 0u);
    gate->remove(sessions.front());
    EXPECT_NE(gate->open(QStringLiteral("/K"), "10.0.0.1"), 0u);
    EXPECT_EQ(gate->open(QStringLiteral("/K"), "10.0.0.1"), 0u);
}

TEST_F(ASessionLine, IsLostInTimeForTheNextLookAfterItsClientsLastPull)
{
    now += timing().heartbeat;
    line->outbox.put(1, "batch");
    // Time goes by within the pull: only its beginning was a sign of life.
    line->outbox.whenBelow(1, [this] { now += timing().heartbeat; });
    const VALUETREE::Delivery_var before = servant.pull(session, 1, true);
    now += timing().heartbeat * 2 - timing().watchInterval();
    EXPECT_FALSE(line->heartbeat.isLost());
    now += std::chrono::nanoseconds(1);
    EXPECT_TRUE(line->heartbeat.isLost());
    gate->beat(); // else nobody is answered
    const VALUETREE::Delivery_var after = servant.pull(session, 1, false);
    EXPECT_FALSE(line->heartbeat.isLost());
}

TEST_F(ASessionLine, SaysNothingMoreWhenTheMainThreadStandsStill)
{
    now += timing().silenceUntilLost();
    EXPECT_NO_THROW(VALUETREE::Delivery_var(servant.pull(session, 0, true)));
    now += std::chrono::nanoseconds(1);
    EXPECT_THROW(servant.pull(session, 0, true), CORBA::TRANSIENT);
    EXPECT_THROW(servant.open("/K", mirror::protocolVersion), CORBA::TRANSIENT);
    EXPECT_TRUE(gate->takeNew().empty());
    gate->beat();
    EXPECT_NO_THROW(VALUETREE::Delivery_var(servant.pull(session, 0, true)));
    EXPECT_NO_THROW(servant.open("/K", mirror::protocolVersion));
}

TEST_F(ASessionLine, OfAGateThatClosesIsNoMore)
{
    gate->close();
    EXPECT_TRUE(line->outbox.isClosed());
    EXPECT_THROW(servant.pull(session, 0, true), VALUETREE::SessionUnknown);
    EXPECT_THROW(servant.open("/K", mirror::protocolVersion), CORBA::NO_RESOURCES);
}

TEST_F(ASessionLine, ThatEndsWakesWhoWaitsInIt)
{
    servant.close(session);
    EXPECT_TRUE(line->outbox.isClosed());
}

TEST_F(ASessionLine, IsTakenOnce)
{
    const CORBA::ULongLong another = servant.open("/K/Device", mirror::protocolVersion);
    const auto taken = gate->takeNew();
    ASSERT_EQ(taken.size(), 1u);
    EXPECT_EQ(taken[0].first, another);
    EXPECT_EQ(taken[0].second->path, QStringLiteral("/K/Device"));
    EXPECT_TRUE(gate->takeNew().empty());
}

TEST_F(ASessionLine, IsEndedOnce)
{
    servant.close(session);
    servant.close(session);
    EXPECT_THAT(keeper->asked, ElementsAre("end"));
}
} // namespace
