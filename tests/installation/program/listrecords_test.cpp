#include "tests/installation/program/installationfixture.h"

#include "tests/installation/manager/wavfile.h"

#include <QProcess>

namespace
{

using Example = InstallationFixture;

} // namespace

TEST_F(Example, ListsTheRecordsOfADevice)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    ASSERT_EQ(import({writeWavFile(shared->folder.path(), QStringLiteral("listed.wav"), 10)}).exitCode, 0);
    QProcess client;
    client.start(QStringLiteral(LISTRECORDS_PROGRAM), QStringList());
    ASSERT_TRUE(client.waitForFinished(30000)) << client.readAllStandardError().toStdString();
    EXPECT_EQ(client.exitCode(), 0);
    const QString output = QString::fromUtf8(client.readAllStandardOutput());
    EXPECT_TRUE(output.startsWith(QLatin1String("REC1: "))) << output.toStdString();
    EXPECT_TRUE(output.contains(QLatin1String("records, error 0\n"))) << output.toStdString();
    EXPECT_TRUE(output.contains(QLatin1String("  listed, "))) << output.toStdString();
}
