#include "tests/apps/korvectl/recordfixture.h"

#include <QDirIterator>
#include <QFile>

namespace
{

class ExportCommand : public RecordFixture
{
protected:
    static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }
    /// Of the record, as the recorder has it.
    static QByteArray samples()
    {
        QDirIterator files(filePath("recorder"), {recordId + QStringLiteral("*.sigmf-data")}, QDir::Files,
                           QDirIterator::Subdirectories);
        EXPECT_TRUE(files.hasNext());
        return contentOf(files.next());
    }
    static Run exportTo(const QString &folder) { return askFor("export REC1 RECORD --json --to", folder); }
    /// Of that kind, as the program tells it.
    static QJsonObject file(const Run &run, const char *ending)
    {
        const QJsonArray files = object(run)[QStringLiteral("files")].toArray();
        for (const QJsonValue &value : files)
            if (value.toObject()[QStringLiteral("path")].toString().endsWith(QLatin1String(ending)))
                return value.toObject();
        return {};
    }
    static int fetched(const Run &run, const char *ending)
    {
        return file(run, ending)[QStringLiteral("fetchedBytes")].toInt(-1);
    }
};

TEST_F(ExportCommand, FetchesThePairOfFiles)
{
    const Run run = exportTo(filePath("whole"));
    ASSERT_EQ(run.exitCode, 0) << run.errors.toStdString();
    const QString data = file(run, ".sigmf-data")[QStringLiteral("path")].toString();
    EXPECT_EQ(contentOf(data), samples());
    EXPECT_EQ(fetched(run, ".sigmf-data"), 16000);
    EXPECT_GT(file(run, ".sigmf-meta")[QStringLiteral("sizeBytes")].toInt(), 0);
    EXPECT_EQ(QDir(filePath("whole")).entryList(QDir::Files).size(), 2);
}

TEST_F(ExportCommand, GoesOnFromWhatIsThere)
{
    const QString data = file(exportTo(filePath("resumed")), ".sigmf-data")[QStringLiteral("path")].toString();
    ASSERT_TRUE(QFile::resize(data, 6000));
    ASSERT_TRUE(QFile::rename(data, data + QStringLiteral(".part")));
    const Run resumed = exportTo(filePath("resumed"));
    EXPECT_EQ(fetched(resumed, ".sigmf-data"), 10000);
    EXPECT_EQ(contentOf(data), samples());
    const Run again = exportTo(filePath("resumed"));
    EXPECT_EQ(fetched(again, ".sigmf-data"), 0);
    EXPECT_GT(fetched(again, ".sigmf-meta"), 0);
    EXPECT_EQ(QDir(filePath("resumed")).entryList(QDir::Files).size(), 2);
}

TEST_F(ExportCommand, ShowsATableToPeople)
{
    const Run run = askFor("export REC1 RECORD --to", filePath("table"));
    ASSERT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_EQ(run.output.split(u'\n').size(), 4) << run.output.toStdString();
    EXPECT_TRUE(run.output.startsWith(QLatin1String("FILE")));
    EXPECT_EQ(run.errors, QString());
}

TEST_F(ExportCommand, TellsWhyThereIsNone)
{
    const Run unknown = askFor("export REC1 R-no --to", filePath("none"));
    EXPECT_EQ(unknown.exitCode, 3);
    EXPECT_TRUE(unknown.errors.contains(QLatin1String("Id: 501 : "))) << unknown.errors.toStdString();
    const Run nowhere = askFor("export REC1 RECORD --to /proc/nowhere");
    EXPECT_EQ(nowhere.exitCode, 4);
    EXPECT_TRUE(isOneSentence(nowhere.errors)) << nowhere.errors.toStdString();
}

TEST_F(ExportCommand, KeepsWhatHasComeWhenTheDeviceIsSilent)
{
    shared->recorder->suspend();
    const Run run = askFor("export REC1 RECORD --timeout 1 --to", filePath("silent"));
    shared->recorder->resume();
    EXPECT_NE(run.exitCode, 0);
    EXPECT_EQ(run.output, QString());
    EXPECT_EQ(exportTo(filePath("silent")).exitCode, 0);
}

} // namespace
