#include "tests/installation/program/installationfixture.h"

#include "tests/installation/manager/wavfile.h"

#include <QFile>
#include <QRegularExpression>

using Import = InstallationFixture;

TEST_F(Import, MakesRecordsOfFilesAndNamesThem)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    const QString file = writeWavFile(shared->folder.path(), QStringLiteral("one second.wav"), 8000);
    const Run done = import({file});
    ASSERT_EQ(done.exitCode, 0) << done.errors.toStdString();
    const QString id = done.output.trimmed().section(QStringLiteral(": "), -1);
    EXPECT_EQ(done.output.trimmed(), file + QLatin1String(": ") + id);
    ASSERT_TRUE(recordIds().contains(id));

    const TQ_KRV::IF_KRV_c_KRV_var found = manager();
    const TQ_KRV::struMETA_DATA_var metaData = found->getMetaDataForRecord("REC1", id.toLatin1());
    EXPECT_EQ(metaData->size, 16000u);
    EXPECT_EQ(metaData->stopTime - metaData->startTime, 1000000u);
    EXPECT_EQ(QString::fromUtf8(metaData->korveAddress), address());
}

TEST_F(Import, NamesAFileThatIsNoneAndGoesOn)
{
    const QString noWav = filePath("host.ini");
    const QString wav = writeWavFile(shared->folder.path(), QStringLiteral("good.wav"), 10);
    const Run done = import({noWav, filePath("missing.wav"), wav});
    EXPECT_EQ(done.exitCode, 1);
    EXPECT_TRUE(done.errors.contains(noWav));
    EXPECT_TRUE(done.errors.contains(filePath("missing.wav")));
    EXPECT_TRUE(done.output.startsWith(wav));
}

TEST_F(Import, SaysThatThereIsNoSuchRecorder)
{
    const Run done = run({QStringLiteral("import"), QStringLiteral("REC9"), filePath("host.ini")});
    EXPECT_EQ(done.exitCode, 2);
    EXPECT_TRUE(done.errors.contains(QLatin1String("REC9")));
    EXPECT_TRUE(done.errors.contains(address()));
}
