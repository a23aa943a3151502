#include "installation/manager/channelpublisher.h"

#include "installation/manager/channelview.h"

#include "korvebase/errordescriptor.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/valuenumeric.h"

#include <QtTest/QTest>

#include <gmock/gmock.h>

#include <thread>

using namespace installation;
using values::Tree;
using State = ChannelRun::State;

namespace
{

QString textAt(const char *path)
{
    const values::ValueBase *const value = Tree::Instance().findValue(QLatin1String(path));
    return value ? value->GetStringValue() : QStringLiteral("no such value");
}

double numberAt(const char *path)
{
    const auto *const value =
        dynamic_cast<const values::ValueNumeric<double> *>(Tree::Instance().findValue(QLatin1String(path)));
    return value ? value->GetValue() : -1;
}

Channel replayed()
{
    Channel channel{.id = QStringLiteral("1")};
    channel.settings.name = QStringLiteral("one");
    channel.settings.rate = TQ_KRV::drVUHF_20M;
    channel.settings.replay = true;
    channel.run.state = State::ReplayRunning;
    channel.run.deviceId = QStringLiteral("REC1");
    channel.run.recordId = QStringLiteral("R1");
    channel.run.begin = 1000;
    channel.run.end = 3000;
    channel.run.count = 1;
    channel.progress = {.position = 2000, .recordEnd = 4000, .startUs = 1000000, .stopUs = 5000000};
    return channel;
}

struct Modes {
    const char *name;
    State state;
    quint32 count;
    const char *recording;
    const char *replay;
    const char *both;
};

class ChannelModes : public testing::TestWithParam<Modes>
{
};

} // namespace

TEST(ChannelPublisher, ShowsAReplay)
{
    ChannelPublisher publisher;
    publisher.publish({replayed()}, {});
    EXPECT_EQ(textAt("/KORVE/Channel/1/ChannelName"), QLatin1String("one"));
    EXPECT_EQ(textAt("/KORVE/Channel/1/DataRateClass"), QLatin1String("VUHF_20M"));
    EXPECT_EQ(textAt("/KORVE/Channel/1/DataFormat"), QLatin1String("RAW"));
    EXPECT_EQ(textAt("/KORVE/Channel/1/PelinRegistrationMode"), QLatin1String("OFF"));
    EXPECT_EQ(textAt("/KORVE/Channel/1/DeviceID"), QLatin1String("REC1"));
    EXPECT_EQ(textAt("/KORVE/Channel/1/RecordID"), QLatin1String("R1"));
    EXPECT_EQ(textAt("/KORVE/Channel/1/ReplayMode"), QLatin1String("Replay Running"));
    EXPECT_EQ(numberAt("/KORVE/Channel/1/StartPosition"), 1000);
    EXPECT_EQ(numberAt("/KORVE/Channel/1/StopPosition"), 3000);
    EXPECT_EQ(numberAt("/KORVE/Channel/1/ReplayBegin"), 2000000);
    EXPECT_EQ(numberAt("/KORVE/Channel/1/CurrentReplayPosition"), 3000000);
    EXPECT_EQ(numberAt("/KORVE/Channel/1/ReplayEnd"), 4000000);
}

TEST(ChannelPublisher, KeepsTheRecordThatWasLast)
{
    ChannelPublisher publisher;
    Channel channel = replayed();
    publisher.publish({channel}, {});
    channel.run = {};
    publisher.publish({channel}, {});
    EXPECT_EQ(textAt("/KORVE/Channel/1/ReplayMode"), QLatin1String("Replay Idle"));
    EXPECT_EQ(textAt("/KORVE/Channel/1/RecordID"), QLatin1String("R1"));
}

TEST(ChannelPublisher, ShowsWhatIsTooGreatAsTheGreatest)
{
    ChannelPublisher publisher;
    Channel channel = replayed();
    channel.run.count = std::numeric_limits<quint32>::max();
    channel.progress.sizeBytes = 3ull << 40; // 3 TiB
    publisher.publish({channel}, {});
    EXPECT_EQ(textAt("/KORVE/Channel/1/NoOfReplays"), QLatin1String("2147483647"));
    EXPECT_EQ(textAt("/KORVE/Channel/1/FileSizeInKB"), QLatin1String("2147483647"));
    channel.run.state = State::Recording;
    channel.run.durationS = std::numeric_limits<quint32>::max();
    channel.progress.stopUs = 0; // nothing has come yet
    publisher.publish({channel}, {});
    EXPECT_EQ(textAt("/KORVE/Channel/1/RecordTimeout"), QLatin1String("2147483647"));
    EXPECT_EQ(textAt("/KORVE/Channel/1/Duration"), QLatin1String("0"));
}

TEST(ChannelPublisher, AnswersWithTheErrorOfACommand)
{
    ChannelPublisher publisher;
    Channel channel = replayed();
    channel.error = {1, 768, QStringLiteral("record R1 is busy")};
    publisher.publish({channel}, channel.error);
    ErrorDescriptor reader;
    const auto read = reader.GetErrorCode(textAt("/KORVE/Channel/1/ErrorCode"));
    EXPECT_EQ(read.classifier, ErrorDescriptor::Error);
    EXPECT_EQ(read.errorCode, QLatin1String("768"));
    EXPECT_EQ(read.message, QLatin1String("record R1 is busy"));
    EXPECT_EQ(textAt("/KORVE/Command/ErrorCode"), textAt("/KORVE/Channel/1/ErrorCode"));
    const QString before = textAt("/KORVE/Channel/1/ErrorCode");
    publisher.publish({channel}, channel.error);
    EXPECT_EQ(textAt("/KORVE/Channel/1/ErrorCode"), before);
}

TEST(ChannelPublisher, AnswersWithTheErrorOfNoChannel)
{
    ChannelPublisher publisher;
    publisher.publish({replayed()}, {1, 753, QStringLiteral("no channel")});
    EXPECT_TRUE(textAt("/KORVE/Command/ErrorCode").endsWith(QLatin1String("@Error@753@no channel")));
    EXPECT_EQ(textAt("/KORVE/Channel/1/ErrorCode"), QString());
}

TEST(ChannelPublisher, TakesAwayWhatIsNotThere)
{
    {
        ChannelPublisher publisher;
        Channel second = replayed();
        second.id = QStringLiteral("2");
        publisher.publish({replayed(), second}, {});
        publisher.publish({second}, {});
        EXPECT_FALSE(Tree::Instance().findNode(QStringLiteral("/KORVE/Channel/1")));
        EXPECT_TRUE(Tree::Instance().findNode(QStringLiteral("/KORVE/Channel/2")));
    }
    EXPECT_FALSE(Tree::Instance().findNode(QStringLiteral("/KORVE/Channel/2")));
}

TEST(ChannelPublisher, TakesListsFromOtherThreads)
{
    ChannelPublisher publisher;
    std::thread([listener = publisher.listener()] { listener({replayed()}, {}); }).join();
    EXPECT_TRUE(QTest::qWaitFor([] { return textAt("/KORVE/Channel/1/RecordID") == QLatin1String("R1"); }));
}

TEST_P(ChannelModes, AreShown)
{
    ChannelPublisher publisher;
    Channel channel = replayed();
    channel.run.state = GetParam().state;
    channel.run.count = GetParam().count;
    publisher.publish({channel}, {});
    EXPECT_EQ(textAt("/KORVE/Channel/1/AllRecordReplayModes"), QLatin1String(GetParam().recording));
    EXPECT_EQ(textAt("/KORVE/Channel/1/ReplayMode"), QLatin1String(GetParam().replay));
    EXPECT_EQ(textAt("/KORVE/Channel/1/RecordReplayModes"), QLatin1String(GetParam().both));
}

INSTANTIATE_TEST_SUITE_P(
    States, ChannelModes,
    testing::Values(
        Modes{"Idle", State::Idle, 0, "RecordReplayStopped", "Replay Idle", "Stopped"},
        Modes{"ReplayStarting", State::ReplayStarting, 1, "RecordReplayStopped", "Replay Starting", "Replay"},
        Modes{"ReplayRunning", State::ReplayRunning, 1, "RecordReplayStopped", "Replay Running", "Replay"},
        Modes{"ForEver", State::ReplayRunning, 0, "RecordReplayStopped", "Replay Running", "ReplayContinuous"},
        Modes{"ReplayPausing", State::ReplayPausing, 1, "RecordReplayStopped", "Replay Pausing", "ReplayPause"},
        Modes{"ReplayPaused", State::ReplayPaused, 1, "RecordReplayStopped", "Replay Paused", "ReplayPause"},
        Modes{"ReplayStopping", State::ReplayStopping, 1, "RecordReplayStopped", "Replay Stopping", "Replay"},
        Modes{"RecordStarting", State::RecordStarting, 0, "StartRecord", "Replay Idle", "Record"},
        Modes{"Recording", State::Recording, 0, "Record", "Replay Idle", "Record"},
        Modes{"Loop", State::Recording, 64, "RecordContinuous", "Replay Idle", "RecordContinuous"},
        Modes{"RecordStopping", State::RecordStopping, 0, "RecordStopping", "Replay Idle", "Record"}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(ChannelView, CountsTimeEvenlyWithinTheRecord)
{
    const ChannelProgress progress{.recordBegin = 100, .recordEnd = 300, .startUs = 1000, .stopUs = 3000};
    EXPECT_EQ(timeAtUs(progress, 0), 1000);
    EXPECT_EQ(timeAtUs(progress, 200), 2000);
    EXPECT_EQ(timeAtUs(progress, 400), 3000);
    EXPECT_EQ(timeAtUs({.startUs = 7}, 5), 7);
}
