#include "apps/korvectl/channelcalls.h"
#include "apps/korvectl/channelstates.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

using namespace korvectl;

namespace
{

ChannelState replaying()
{
    ChannelState state{QStringLiteral("7"), QStringLiteral("korvectl 127.0.0.1:9000 tcp")};
    state.device = QStringLiteral("REC1");
    state.record = QStringLiteral("R1");
    state.replay = QStringLiteral("Replay Running");
    state.recording = QStringLiteral("RecordReplayStopped");
    state.beginUs = 1'000'000;
    state.endUs = 3'000'000;
    state.positionUs = 1'500'000;
    return state;
}

} // namespace

TEST(ChannelState, KnowsWhatItDoes)
{
    ChannelState state = replaying();
    EXPECT_TRUE(state.isReplaying());
    EXPECT_FALSE(state.isRecording());
    EXPECT_EQ(state.progress(), 0.25);
    state.replay = QStringLiteral("Replay Idle");
    EXPECT_TRUE(state.isIdle());
    EXPECT_FALSE(state.progress());
    state.recording = QStringLiteral("Record");
    EXPECT_TRUE(state.isRecording());
}

TEST(ChannelState, BearsStrangePositions)
{
    ChannelState state = replaying();
    state.positionUs = 9e9;
    EXPECT_EQ(state.progress(), 1);
    state.endUs = state.beginUs;
    EXPECT_FALSE(state.progress());
}

TEST(ChannelState, IsInTheOrderInWhichManagersCount)
{
    const ChannelState nine{QStringLiteral("9")};
    const ChannelState ten{QStringLiteral("10")};
    EXPECT_TRUE(isBefore(nine, ten));
    EXPECT_FALSE(isBefore(ten, nine) || isBefore(ten, ten));
}

TEST(ChannelState, TellsItsLastError)
{
    ChannelState state = replaying();
    EXPECT_EQ(state.errorNumber(), 0u);
    state.error = QStringLiteral("12@Error@902@nobody listens");
    EXPECT_EQ(state.errorNumber(), 902u);
    EXPECT_EQ(state.errorText(), QLatin1String("nobody listens"));
    state.error = QStringLiteral("nonsense");
    EXPECT_EQ(state.errorNumber(), 0u);
}

TEST(ChannelState, IsARowForPeopleAndAnObjectForPrograms)
{
    ChannelState state = replaying();
    state.error = QStringLiteral("12@Error@902@nobody listens");
    const QString row = channelsTable({state}).section(u'\n', 1, 1).simplified();
    EXPECT_EQ(row, QLatin1String("7 korvectl 127.0.0.1:9000 tcp running REC1 R1 25.0 % 902 nobody listens"));
    const QJsonObject object =
        QJsonDocument::fromJson(channelsJson({state}).toUtf8()).array().first().toObject();
    EXPECT_EQ(object[QStringLiteral("progress")].toDouble(), 0.25);
    EXPECT_EQ(object[QStringLiteral("errorNumber")].toInt(), 902);
    state.recording = QStringLiteral("RecordStopping");
    EXPECT_TRUE(channelsTable({state}).contains(QLatin1String("RecordStopping")));
}

TEST(ChannelWish, HasANameByWhichItIsKnownAgain)
{
    ChannelWish wish{QStringLiteral("REC1"), KORVE_XML::KORVE_RecordData::VUHF_1M, KORVE_XML::KORVE_RecordData::RAW, false,
                     {QStringLiteral("10.0.0.7"), 9000}, true};
    EXPECT_EQ(wish.name(), QLatin1String("korvectl 10.0.0.7:9000 udp"));
    EXPECT_TRUE(isNameOfOurs(wish.name()));
    EXPECT_FALSE(isNameOfOurs(QStringLiteral("receiver 1")));
}
