#include "tests/apps/korvectl/recordfixture.h"
#include "tests/support/loopbacklease.h"

#include <QDir>
#include <QFile>

#include <QJsonObject>

namespace
{

/// The services of a host, of which some end.
class KorvectlDoctor : public KorvectlFixture
{
protected:
    static QString text(const QJsonValue &link, const char *member)
    {
        return link.toObject()[QLatin1String(member)].toString();
    }
    static QStringList rivalArguments(const QString &state)
    {
        QStringList arguments = argumentsOf("recorder");
        arguments.last() = state;
        return arguments;
    }
    static bool isSound(const QJsonValue &link) { return link.toObject()[QStringLiteral("sound")].toBool(); }
};

TEST_F(KorvectlDoctor, GoesAllTheWayToTheDevices)
{
    const Run run = ask(words("doctor --timeout 20"));
    EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_EQ(run.errors, QString());
    QStringList links;
    for (const QString &line : run.output.split(u'\n', Qt::SkipEmptyParts).mid(1)) {
        links << line.left(24).trimmed();
        EXPECT_TRUE(line.contains(address())) << line.toStdString();
        EXPECT_TRUE(line.contains(QLatin1String(" ms  ok ")) || line.contains(QLatin1String(" s  ok ")))
            << line.toStdString();
    }
    EXPECT_EQ(links.join(QLatin1String(", ")), QLatin1String("central object service, recorder manager, value tree, "
                                                             "list of devices, recorder REC1, storage REC1, files REC1, "
                                                             "device REC1, names"));
    EXPECT_FALSE(run.output.contains(u'\x1b')); // no terminal, no colours
    EXPECT_GT(run.output.indexOf(QLatin1String("ADDRESS")), qstrlen("recorder KORVE-255.255.255.255"))
        << "devices of the usual names stand in their column";
}

TEST_F(KorvectlDoctor, NamesTheAddressWhereNobodyListens)
{
    const LoopbackLease nobody;
    const Run run = ask(words("doctor --timeout 0.5 --json"), nobody.address());
    EXPECT_EQ(run.exitCode, 2);
    ASSERT_EQ(array(run).size(), 1);
    const QJsonValue link = array(run).first();
    EXPECT_FALSE(isSound(link));
    EXPECT_EQ(text(link, "address"), nobody.address() + QLatin1String(":8003"));
    EXPECT_EQ(text(link, "complaint"), QStringLiteral("The central object service at %1:8003 did not answer within "
                                                      "0.5 s: nothing listens there.")
                                           .arg(nobody.address()));
    EXPECT_TRUE(text(link, "remedy").contains(QLatin1String("KORVE_CCO")));
    EXPECT_GT(link.toObject()[QStringLiteral("elapsedUs")].toDouble(), 0);
}

TEST_F(KorvectlDoctor, NamesTheSubsystemsWhereThereIsNoManager)
{
    const Run run = ask(words("doctor --timeout 0.5 --subsystem Nowhere --json"));
    EXPECT_EQ(run.exitCode, 2);
    ASSERT_EQ(array(run).size(), 2);
    EXPECT_TRUE(isSound(array(run)[0]));
    EXPECT_TRUE(text(array(run)[1], "complaint").contains(QLatin1String("no recorder manager of subsystem Nowhere")));
    EXPECT_TRUE(text(array(run)[1], "remedy").contains(QLatin1String("Main")));
}

TEST_F(KorvectlDoctor, StopsAtARecorderThatStandsStill)
{
    ASSERT_EQ(ask(words("doctor --timeout 20")).exitCode, 0);
    shared->recorder->suspend();
    const Run run = ask(words("doctor --timeout 0.5"));
    shared->recorder->resume();
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.output.trimmed().endsWith(QLatin1String("broken"))) << run.output.toStdString();
    EXPECT_TRUE(run.output.contains(QLatin1String("recorder REC1"))) << run.output.toStdString();
    EXPECT_TRUE(run.errors.contains(QLatin1String("something listens there"))) << run.errors.toStdString();
    EXPECT_EQ(run.errors.count(u'\n'), 2) << run.errors.toStdString(); // complaint and remedy
}

/// A recorder whose disk has its troubles.
class DiskOfTheRecorder : public RecordFixture
{
protected:
    static QString recordings() { return filePath("recorder/recordings"); }
    static void expectBroken(const char *link, const QString &words)
    {
        const Run run = ask(KorvectlFixture::words("doctor --timeout 5"));
        EXPECT_EQ(run.exitCode, 2);
        const QString last = run.output.trimmed().section(u'\n', -1);
        EXPECT_TRUE(last.startsWith(QLatin1String(link)) && last.endsWith(QLatin1String("broken"))) << last.toStdString();
        EXPECT_TRUE(run.errors.contains(words)) << run.errors.toStdString();
    }
};

TEST_F(DiskOfTheRecorder, HasNoFolderAnyMore)
{
    ASSERT_TRUE(QDir().rename(recordings(), filePath("elsewhere")));
    expectBroken("storage REC1", recordings());
    ASSERT_TRUE(QDir().rename(filePath("elsewhere"), recordings()));
    EXPECT_EQ(askFor("doctor").exitCode, 0);
}

TEST_F(DiskOfTheRecorder, IsFull)
{
    restart("recorder", "disk full on REC1");
    expectBroken("storage REC1", QStringLiteral("has too little room: %1: 0 B of").arg(recordings()));
    expectBroken("storage REC1", QStringLiteral("are free; it should be 16.0 MB.\n"));
    restart("recorder");
}

TEST_F(DiskOfTheRecorder, IsFullAlsoWhenTheRecorderTakesTooLongToSaySoAgain)
{
    restart("recorder", "disk full on REC1\non getMassStoreStatus delay 3s");
    expectBroken("storage REC1", QStringLiteral("has too little room"));
    restart("recorder");
}

TEST_F(DiskOfTheRecorder, HasFilesThatAreRefused)
{
    const QString stray = recordings() + QStringLiteral("/R-lost.sigmf-data");
    QFile samples(stray);
    ASSERT_TRUE(samples.open(QIODevice::WriteOnly));
    restart("recorder");
    expectBroken("files REC1", QStringLiteral("R-lost.sigmf-data (samples without meta data)"));
    const Run records = askFor("records REC1");
    EXPECT_EQ(records.exitCode, 5);
    EXPECT_TRUE(records.output.contains(recordId));
    EXPECT_TRUE(isOneSentence(records.errors) && records.errors.contains(QLatin1String("R-lost.sigmf-data")))
        << records.errors.toStdString();
    ASSERT_TRUE(QFile::remove(stray));
    restart("recorder");
    EXPECT_EQ(askFor("records REC1").exitCode, 0);
}

TEST_F(KorvectlDoctor, StopsAtAManagerThatHasEnded)
{
    shared->manager->kill();
    const Run run = ask(words("doctor --timeout 0.5 --json"));
    shared->manager = start("manager");
    EXPECT_EQ(run.exitCode, 2);
    ASSERT_EQ(array(run).size(), 2);
    EXPECT_EQ(text(array(run)[1], "link"), QLatin1String("recorder manager"));
    EXPECT_FALSE(text(array(run)[1], "complaint").isEmpty());
}

TEST_F(KorvectlDoctor, NamesTwoRecordersWithOneDeviceId)
{
    ASSERT_EQ(ask(words("doctor --timeout 20")).exitCode, 0);
    const LoopbackLease elsewhere;
    qputenv("KORVE_ADDRESS", elsewhere.address().toLatin1());
    const QTemporaryDir state;
    const ServiceProcess rival(QStringLiteral(INSTALLATION_PROGRAM), rivalArguments(state.path()));
    qputenv("KORVE_ADDRESS", address().toLatin1());
    const Run run = ask(words("doctor --timeout 5 --json"));
    EXPECT_EQ(run.exitCode, 2);
    const QJsonValue last = array(run).last();
    EXPECT_EQ(text(last, "link"), QLatin1String("names"));
    const QString wanted = rival.readyWords().value(3).chopped(1); // "standing by recorder HOST:PORT: ..."
    EXPECT_EQ(text(last, "complaint"), QStringLiteral("%1 has the name KorveRecorder/REC1/IF_Control, which %2 wants, too.")
                                           .arg(shared->recorder->readyWords().value(2), wanted));
    EXPECT_TRUE(text(last, "remedy").contains(QLatin1String("[recorder] device=")));
}

} // namespace
