#include "tests/apps/korvectl/recordfixture.h"

#include "orbconnection/orbhandler.h"
#include "tests/installation/manager/wavfile.h"
#include "tests/support/waiting.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUdpSocket>
#include <QtTest/QTest>

#include <utility>
#include <vector>

namespace
{

constexpr int wholeBytes = 16000;

QByteArray receivedFrom(QTcpSocket &socket, int count)
{
    QByteArray bytes = socket.readAll();
    while (bytes.size() < count && socket.waitForReadyRead(patienceMs))
        bytes += socket.readAll();
    return bytes;
}

/// Beside a receiver of samples.
class ReplayCommand : public RecordFixture
{
protected:
    ReplayCommand() { EXPECT_TRUE(receiver.listen(QHostAddress(address()))); }

    static QString endpointOf(const QTcpServer &server)
    {
        return QStringLiteral("%1:%2").arg(address()).arg(server.serverPort());
    }
    QString target() const { return endpointOf(receiver); }
    Run start(const char *further) const
    {
        const QStringList command = words("replay start REC1") << recordId << QStringLiteral("--to") << target();
        return ask(command + words(further));
    }
    /// What comes over the next connection, until @p count bytes are there, or its end.
    QByteArray received(int count)
    {
        if (!socket && !receiver.waitForNewConnection(patienceMs))
            return {};
        if (!socket)
            socket = receiver.nextPendingConnection();
        return receivedFrom(*socket, count);
    }
    /// The samples of the recording, as they lie on the recorder's disk.
    static QByteArray samplesOf(const QString &id)
    {
        QFile file(filePath(qPrintable(QStringLiteral("recorder/recordings/%1.sigmf-data").arg(id))));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static TQ_KRV::IF_KRV_c_Chan_var registered(const QByteArray &name, const QString &endpoint)
    {
        CORBA::String_var id;
        return TQ_KRV::IF_KRV_c_KRV_var(manager())
            ->registerReceiverChannel(TQ_KRV::IF_KRV_c_ChanMan::_nil(), TQ_KRV::drVUHF_1M, TQ_KRV::dfRAW, false, true,
                                      name, "REC1", TQ_KRV::TCP_IF, endpoint.toLatin1(), id.out());
    }
    static void removeAllChannels()
    {
        const TQ_KRV::IF_KRV_c_KRV_var korve = manager();
        const QJsonArray all = array(ask(words("replay status --json")));
        for (const QJsonValue &channel : all) {
            const QByteArray id = channel.toObject()[QStringLiteral("channel")].toString().toLatin1();
            TQ_KRV::IF_KRV_c_Chan_var(korve->getKorveChannelInterface(id))->removeChannelForced();
        }
    }
    /// A replay session that the recorder has made for this program, past the manager.
    static TQ_KORVE::IF_ReplaySession_ptr sessionOfOurOwn()
    {
        const char *const path = "CCO/LocalSystem/LocalSubSystem/CentralServices/KorveRecorder/REC1/IF_Control";
        const CORBA::Object_var object = CorbaCommon::OrbHandler::Instance().ResolveInterfaceViaCCO(path, QString());
        const TQ_KORVE::IF_Control_var recorder = TQ_KORVE::IF_Control::_narrow(object);
        return recorder->getReplaySessionById(recordId.toUtf8(), TQ_KORVE_IT::IF_Korve_IT::_nil());
    }
    /// The state of the channel that replays; that of any when none does.
    static std::string replayState()
    {
        std::string state = "none";
        const QJsonArray all = array(askFor("replay status REC1 RECORD --json"));
        for (const QJsonValue &channel : all)
            if (state == "none" || state == "Replay Idle")
                state = channel.toObject()[QStringLiteral("replay")].toString().toStdString();
        return state;
    }
    static bool becomes(const std::string &state)
    {
        QElapsedTimer clock;
        clock.start();
        while (replayState() != state)
            if (clock.elapsed() > patienceMs)
                return false;
        return true;
    }
    /// The manager learns a little later than the recorder that a replay is over.
    static bool isIdle()
    {
        return QTest::qWaitFor(
            [] {
                const std::string state = replayState();
                return record()[QStringLiteral("status")].toString() == QLatin1String("IDLE") &&
                       (state == "none" || state == "Replay Idle");
            },
            patienceMs);
    }

    QTcpServer receiver;
    QTcpSocket *socket = nullptr;
};

TEST_F(ReplayCommand, SendsTheRecordToAnAddress)
{
    const Run run = start("--speed max");
    ASSERT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_TRUE(run.output.contains(target())) << run.output.toStdString();
    EXPECT_EQ(received(wholeBytes).size(), wholeBytes);
    EXPECT_TRUE(becomes("Replay Idle"));
    EXPECT_TRUE(isIdle());
}

TEST_F(ReplayCommand, TracesNoFailureWhenAllIsWell)
{
    const Run run = start("--speed max -v");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_FALSE(run.errors.contains(QLatin1String("fail"))) << run.errors.toStdString();
    EXPECT_EQ(received(wholeBytes).size(), wholeBytes);
    EXPECT_TRUE(isIdle());
}

TEST_F(ReplayCommand, SendsASectionSoOften)
{
    const Run run = start("--speed max --count 3 --range 0.25s:0.5s");
    ASSERT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_EQ(received(wholeBytes).size(), 3 * 4000);
    EXPECT_TRUE(isIdle());
}

TEST_F(ReplayCommand, RefusesASpeedThatIsNoRate)
{
    const Run run = start("--speed 0.0000001"); // below one sample a second
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.errors.contains(QLatin1String("there is no such rate"))) << run.errors.toStdString();
}

TEST_F(ReplayCommand, PausesContinuesAndStops)
{
    ASSERT_EQ(start("--speed 0.1 --count 0").exitCode, 0);
    EXPECT_TRUE(becomes("Replay Running"));
    EXPECT_FALSE(received(1).isEmpty());
    const Run paused = askFor("replay pause REC1 RECORD");
    EXPECT_EQ(paused.exitCode, 0) << paused.errors.toStdString();
    EXPECT_TRUE(becomes("Replay Paused"));
    EXPECT_TRUE(askFor("replay status REC1 RECORD").output.contains(QLatin1String("paused")));
    const Run continued = askFor("replay continue REC1 RECORD --json");
    EXPECT_EQ(object(continued)[QStringLiteral("replay")].toString(), QLatin1String("continued"));
    EXPECT_TRUE(becomes("Replay Running"));
    const Run stopped = askFor("replay stop REC1 RECORD");
    EXPECT_EQ(stopped.exitCode, 0) << stopped.errors.toStdString();
    EXPECT_TRUE(isIdle());
    EXPECT_EQ(replayState(), "none") << "the channel is to go with its replay";
}

TEST_F(ReplayCommand, WaitsForNoChannelWhereThereIsNone)
{
    removeAllChannels();
    const TQ_KORVE::IF_ReplaySession_var session = sessionOfOurOwn();
    const Run stopped = askFor("replay stop REC1 RECORD --timeout 3600"); // longer than a test waits
    EXPECT_EQ(stopped.exitCode, 0) << stopped.errors.toStdString();
    EXPECT_TRUE(isIdle());
}

TEST_F(ReplayCommand, SendsDatagrams)
{
    QUdpSocket datagrams;
    ASSERT_TRUE(datagrams.bind(QHostAddress(address())));
    const QString where = QStringLiteral("%1:%2").arg(address()).arg(datagrams.localPort());
    const Run run = askFor("replay start REC1 RECORD --udp --to", where);
    ASSERT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_TRUE(datagrams.waitForReadyRead(patienceMs));
    askFor("replay stop REC1 RECORD"); // it may be over by now
    EXPECT_TRUE(isIdle());
}

TEST_F(ReplayCommand, GoesToItsOwnReceiverAlthoughAnotherOneIsRegistered)
{
    QTcpServer others;
    ASSERT_TRUE(others.listen(QHostAddress(address())));
    const TQ_KRV::IF_KRV_c_Chan_var channel = registered("somebody else", endpointOf(others));
    const Run run = start("--speed max");
    EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_EQ(received(wholeBytes), samplesOf(recordId));
    EXPECT_FALSE(others.waitForNewConnection(0));
    EXPECT_TRUE(isIdle());
    channel->removeChannel();
}

TEST_F(ReplayCommand, SendsTwoAtOnceEachToItsOwnReceiver)
{
    const Run imported = import({writeWavFile(shared->folder.path(), QStringLiteral("shorter.wav"), 6000)});
    const QString shorter = imported.output.trimmed().section(QStringLiteral(": "), -1);
    QTcpServer others;
    ASSERT_TRUE(others.listen(QHostAddress(address())));
    for (int round = 0; round < 5; ++round) {
        QProcess other;
        other.start(QStringLiteral(KORVECTL_PROGRAM),
                    words("replay start REC1") << shorter << words("--speed max --to") << endpointOf(others));
        const Run run = start("--speed max");
        ASSERT_EQ(run.exitCode, 0) << run.errors.toStdString();
        ASSERT_TRUE(other.waitForFinished(patienceMs));
        ASSERT_EQ(other.exitCode(), 0) << other.readAllStandardError().toStdString();
        EXPECT_EQ(received(wholeBytes), samplesOf(recordId));
        ASSERT_TRUE(others.waitForNewConnection(patienceMs));
        EXPECT_EQ(receivedFrom(*others.nextPendingConnection(), wholeBytes), samplesOf(shorter));
        delete std::exchange(socket, nullptr);
        EXPECT_TRUE(isIdle());
    }
}

TEST_F(ReplayCommand, TellsWhyAStartOnAChannelFailed)
{
    ASSERT_EQ(start("--speed 0.1 --count 0").exitCode, 0);
    QTcpServer others;
    ASSERT_TRUE(others.listen(QHostAddress(address())));
    const Run run = askFor("replay start REC1 RECORD --to", endpointOf(others));
    EXPECT_EQ(run.exitCode, 3) << run.errors.toStdString();
    EXPECT_TRUE(run.errors.contains(QLatin1String("Id: 768 : "))) << run.errors.toStdString();
    EXPECT_EQ(askFor("replay stop REC1 RECORD").exitCode, 0);
    EXPECT_TRUE(isIdle());
}

TEST_F(ReplayCommand, NamesTheOptionForAReceiverWhereNoChannelIsRegistered)
{
    const Run run = askFor("replay start REC1 RECORD");
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_TRUE(run.errors.contains(QLatin1String("--to HOST:PORT"))) << run.errors.toStdString();
}

TEST_F(ReplayCommand, UsesNoChannelOfAnEarlierReplayForOneThatNamesNoReceiver)
{
    ASSERT_EQ(start("--speed max").exitCode, 0);
    EXPECT_EQ(received(wholeBytes).size(), wholeBytes);
    EXPECT_TRUE(isIdle());
    EXPECT_EQ(askFor("replay start REC1 RECORD").exitCode, 3);
    EXPECT_FALSE(receiver.waitForNewConnection(0));
}

TEST_F(ReplayCommand, TakesThePlaceOfAChannelThatAnEarlierReplayHasLeft)
{
    std::vector<TQ_KRV::IF_KRV_c_Chan_var> left;
    EXPECT_THROW(
        for (;;) left.push_back(registered("korvectl " + QByteArray::number(int(left.size())), address() + ":1")),
        TQ_KRV::exGen);
    const Run run = start("--speed max --timeout 1");
    EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_EQ(received(wholeBytes), samplesOf(recordId));
    EXPECT_TRUE(isIdle());
    for (const TQ_KRV::IF_KRV_c_Chan_var &channel : left)
        EXPECT_THROW(channel->removeChannel(), CORBA::OBJECT_NOT_EXIST);
}

TEST_F(ReplayCommand, SaysThatADeviceIsUnknown)
{
    for (const char *const line : {"replay pause REC9 RECORD", "replay stop REC9 RECORD"}) {
        const Run run = askFor(line);
        EXPECT_EQ(run.exitCode, 3) << line;
        EXPECT_TRUE(isOneSentence(run.errors) && run.errors.contains(QLatin1String("REC9"))) << run.errors.toStdString();
    }
}

TEST_F(ReplayCommand, TellsWhyItCannot)
{
    for (const auto &[line, number] :
         {std::pair("replay pause REC1 RECORD", "Id: 771 : "), std::pair("replay stop REC1 RECORD", "Id: 760 : "),
          std::pair("replay continue REC1 RECORD", "Id: 767 : "), std::pair("replay start REC1 R-no", "Id: 501 : ")}) {
        const Run run = askFor(line);
        EXPECT_EQ(run.exitCode, 3) << line;
        EXPECT_EQ(run.errors.count(u'\n'), 1);
        EXPECT_TRUE(run.errors.contains(QLatin1String(number))) << run.errors.toStdString();
    }
}

TEST_F(ReplayCommand, SaysThatNobodyKnowsWhetherItStopped)
{
    ASSERT_EQ(start("--speed 0.1 --count 0").exitCode, 0);
    shared->recorder->suspend(); // so that the manager does not answer before the client has lost its patience
    const Run run = askFor("replay stop REC1 RECORD --timeout 1");
    shared->recorder->resume();
    EXPECT_EQ(run.exitCode, 6) << run.errors.toStdString();
    EXPECT_FALSE(run.errors.contains(QLatin1String("failed"))) << run.errors.toStdString();
    const QString check = run.errors.trimmed().section(QStringLiteral("Check it with: korvectl "), -1);
    EXPECT_EQ(check, QStringLiteral("replay status REC1 %1").arg(recordId));
    askFor("replay stop REC1 RECORD"); // unless it was stopped after all
    EXPECT_TRUE(isIdle());
}

TEST_F(ReplayCommand, LeavesNoChannelBehindWhenNobodyListens)
{
    const QString nobody = QStringLiteral("%1:1").arg(address());
    const Run run = askFor("replay start REC1 RECORD --to", nobody);
    EXPECT_EQ(run.exitCode, 3) << run.errors.toStdString();
    EXPECT_TRUE(run.errors.contains(QLatin1String("Id: 902 : "))) << run.errors.toStdString();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !ask(words("replay status")).output.contains(nobody); }, patienceMs));
}

} // namespace
