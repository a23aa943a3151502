#include "tests/apps/korvectl/recordfixture.h"
#include "tests/installation/recorder/fulldisk.h"
#include "tests/support/waiting.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QtTest/QTest>

namespace
{

/// Beside a source of samples.
class RecordingCommand : public RecordFixture
{
protected:
    RecordingCommand() { EXPECT_TRUE(source.listen(QHostAddress(address()))); }

    Run start(const char *further) const
    {
        const QString from = QStringLiteral("%1:%2").arg(address()).arg(source.serverPort());
        return ask(words("record start REC1 new --json --from") << from << words(further));
    }
    bool send(const QByteArray &samples)
    {
        if (!source.waitForNewConnection(patienceMs))
            return false;
        QTcpSocket *const socket = source.nextPendingConnection();
        return socket->write(samples) == samples.size() && socket->waitForBytesWritten(patienceMs);
    }
    static double sizeOf(const QString &record)
    {
        return object(ask(words("record show --json REC1") << record))[QStringLiteral("sizeBytes")].toDouble();
    }

    QTcpServer source;
};

TEST_F(RecordingCommand, MakesARecordOfWhatComes)
{
    const QJsonObject recording = object(start("--rate VUHF_1M --sample-rate 8000"));
    const QString record = recording[QStringLiteral("record")].toString();
    const QString channel = recording[QStringLiteral("channel")].toString();
    ASSERT_FALSE(record.isEmpty());
    ASSERT_TRUE(send(QByteArray(8000, 'x')));
    EXPECT_TRUE(QTest::qWaitFor([&] { return sizeOf(record) == 8000; }, patienceMs)) << sizeOf(record);
    const Run stopped = ask(words("record stop") << channel << words("--comment enough --json"));
    EXPECT_EQ(object(stopped)[QStringLiteral("record")].toString(), record);
    const QJsonObject made = object(ask(words("record show --json REC1") << record));
    EXPECT_EQ(made[QStringLiteral("sizeBytes")].toDouble(), 8000);
    EXPECT_EQ(made[QStringLiteral("name")].toString(), QLatin1String("new"));
    const QJsonObject entry = made[QStringLiteral("history")].toArray().last().toObject();
    EXPECT_EQ(entry[QStringLiteral("text")].toString(), QLatin1String("enough"));
    EXPECT_TRUE(array(ask(words("replay status --json"))).isEmpty()) << "the channel is to go with its recording";
}

TEST_F(RecordingCommand, TellsWhyItCannot)
{
    source.close();
    const Run nobody = ask(words("record start REC1 new --from") << QStringLiteral("%1:1").arg(address()));
    EXPECT_EQ(nobody.exitCode, 3) << nobody.errors.toStdString();
    EXPECT_TRUE(isOneSentence(nobody.errors)) << nobody.errors.toStdString();
    EXPECT_TRUE(nobody.errors.contains(QLatin1String("Id: 902 : "))) << nobody.errors.toStdString();
    EXPECT_TRUE(array(ask(words("replay status --json"))).isEmpty());
    const Run unknown = ask(words("record stop no-such-channel"));
    EXPECT_EQ(unknown.exitCode, 3);
    EXPECT_TRUE(unknown.errors.contains(QLatin1String("Id: 300 : "))) << unknown.errors.toStdString();
}

TEST_F(RecordingCommand, TellsThatANameIsTooLong)
{
    const QString from = QStringLiteral("%1:%2").arg(address()).arg(source.serverPort());
    const Run refused = ask(words("record start REC1") << QString(70000, u'n') << words("--from") << from);
    EXPECT_EQ(refused.exitCode, 3) << refused.errors.toStdString();
    EXPECT_TRUE(refused.errors.contains(QLatin1String("a text of 70000 characters is too long")))
        << refused.errors.toStdString();
    EXPECT_TRUE(array(ask(words("replay status --json"))).isEmpty());
}

TEST_F(RecordingCommand, TellsThatTheDiskOfTheManagerIsFull)
{
    process("manager")->end();
    {
        const FullDisk limit(100);
        process("manager") = InstallationFixture::start("manager");
    }
    ASSERT_TRUE(managerKnowsTheDevice());
    const Run refused = start("--rate VUHF_1M");
    EXPECT_TRUE(isOneSentence(refused.errors)) << refused.errors.toStdString();
    EXPECT_TRUE(refused.errors.contains(QLatin1String("its disk is full"))) << refused.errors.toStdString();
    EXPECT_FALSE(refused.errors.contains(QLatin1String("incompatible")));
    process("manager")->end();
    process("manager") = InstallationFixture::start("manager");
    ASSERT_TRUE(managerKnowsTheDevice());
}

} // namespace
