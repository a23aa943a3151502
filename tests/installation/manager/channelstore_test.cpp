#include "installation/manager/channelstore.h"

#include "installation/manager/channeltext.h"
#include "installation/manager/database.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace installation;

namespace
{

ChannelSettings settings()
{
    return {.name = QStringLiteral("\u00e4 \"quoted\" @/%1"),
            .rate = TQ_KRV::drVUHF_1M,
            .additionalRate = TQ_KRV::drHF_4M,
            .format = TQ_KRV::dfIQBW,
            .record = true,
            .deviceGroups = {{QStringLiteral("A"), QStringLiteral("B")}, {}},
            .interfaceType = TQ_KRV::SIGIQ_IF,
            .receiverAddress = QStringLiteral("10.0.0.1:5"),
            .channelManager = QStringLiteral("IOR:00"),
            .sampleRate = std::numeric_limits<quint64>::max(),
            .sampleBytes = 65535,
            .registersAtArchive = true,
            .forcesRegistration = true};
}

ChannelRun run()
{
    ChannelRun made;
    made.state = ChannelRun::State::RecordStopping;
    made.number = std::numeric_limits<quint64>::max();
    made.step = 1;
    made.deviceId = QStringLiteral("A");
    made.recordId = QStringLiteral("R@1");
    made.recordName = QStringLiteral("\u4e2d");
    made.session = QStringLiteral("IOR:01");
    made.connection = 7;
    made.begin = 8;
    made.end = 9;
    made.count = 10;
    made.durationS = 11;
    made.startedUs = 12;
    made.xg = true;
    return made;
}

class ChannelStoreTest : public testing::Test
{
protected:
    void writeRow(const QByteArray &settingsText, const QByteArray &runText)
    {
        Database(folder.filePath(QStringLiteral("channels.sqlite")))
            .run(QStringLiteral("INSERT INTO channel (settings, run) VALUES (?, ?)"), {settingsText, runText});
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(ChannelStoreTest, KeepsAllThatIsKnownOfAChannel)
{
    const ChannelStore store(folder.path());
    Channel channel{.id = store.add({}), .settings = settings(), .run = run()};
    store.save(channel);
    EXPECT_THAT(ChannelStore(folder.path()).load(), testing::ElementsAre(channel));
    store.remove(channel.id);
    EXPECT_TRUE(store.load().empty());
}

TEST_F(ChannelStoreTest, LeavesOutWhatCannotBeRead)
{
    const ChannelStore store(folder.path());
    const QByteArray good = toText(settings());
    writeRow("nonsense", toText(run()));
    writeRow(good, "[]");
    writeRow(good, "{}");
    writeRow(QByteArray(good).replace("\"rate\":\"15\"", "\"rate\":\"16\""), toText(run()));
    writeRow(QByteArray(good).replace("\"65535\"", "\"65536\""), toText(run()));
    writeRow(good, QByteArray(toText(run())).replace("\"state\":\"8\"", "\"state\":\"9\""));
    writeRow(good, toText(run()));
    EXPECT_EQ(store.load().size(), 1u);
}

TEST_F(ChannelStoreTest, PutsADamagedFileAside)
{
    QFile file(folder.filePath(QStringLiteral("channels.sqlite")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(5000, 'x'));
    file.close();
    EXPECT_TRUE(ChannelStore(folder.path()).load().empty());
    EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("channels.sqlite.refused"))));
}
