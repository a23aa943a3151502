#include "tests/apps/korvectl/recordfixture.h"
#include "tests/support/waiting.h"

#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QtTest/QTest>

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
    /// The samples of the record, as the recorder has them.
    static QByteArray samples()
    {
        QDirIterator files(filePath("recorder"), {recordId + QStringLiteral("*.sigmf-data")}, QDir::Files,
                           QDirIterator::Subdirectories);
        EXPECT_TRUE(files.hasNext());
        return contentOf(files.next());
    }
    static Run exportTo(const QString &folder) { return askFor("export REC1 RECORD --json --to", folder); }
    /// What the program tells of the file whose name has that ending.
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
    static void write(const QString &path, const QByteArray &bytes)
    {
        QFile target(path);
        if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size())
            throw std::runtime_error("cannot write " + path.toStdString());
    }
    static QString samplesPath(const char *folder)
    {
        return filePath(folder) + u'/' + recordId + QStringLiteral(".sigmf-data");
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

TEST_F(ExportCommand, FetchesABeginningOfOtherBytesAgain)
{
    ASSERT_EQ(exportTo(filePath("begun")).exitCode, 0);
    const QString data = samplesPath("begun");
    ASSERT_TRUE(QFile::remove(data));
    write(data + QStringLiteral(".part"), QByteArray(6000, 'x'));
    const Run run = exportTo(filePath("begun"));
    EXPECT_EQ(fetched(run, ".sigmf-data"), 16000);
    EXPECT_EQ(contentOf(data), samples());
}

TEST_F(ExportCommand, FetchesAWholeFileOfOtherBytesAgain)
{
    ASSERT_EQ(exportTo(filePath("other")).exitCode, 0);
    QByteArray bytes = samples();
    bytes[8000] = static_cast<char>(bytes[8000] + 1);
    write(samplesPath("other"), bytes);
    const Run run = exportTo(filePath("other"));
    EXPECT_EQ(fetched(run, ".sigmf-data"), 16000);
    EXPECT_EQ(contentOf(samplesPath("other")), samples());
}

TEST_F(ExportCommand, IsRefusedWhileAnotherOneGoesOnInTheFolder)
{
    restart("recorder", "on copyRecordToArchDevEx delay 3s");
    QProcess first;
    first.start(QStringLiteral(KORVECTL_PROGRAM),
                words("export REC1") << recordId << QStringLiteral("--to") << filePath("shared"));
    const QString begun = filePath("shared/") + recordId + QStringLiteral(".sigmf-meta.part");
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFileInfo::exists(begun); }, patienceMs));
    const Run second = exportTo(filePath("shared"));
    EXPECT_EQ(second.exitCode, 4);
    EXPECT_TRUE(second.errors.contains(QLatin1String("Another export"))) << second.errors.toStdString();
    EXPECT_TRUE(first.waitForFinished(patienceMs));
    EXPECT_EQ(first.exitCode(), 0) << first.readAllStandardError().toStdString();
    EXPECT_EQ(contentOf(samplesPath("shared")), samples());
    restart("recorder");
}

TEST_F(ExportCommand, IsUnknownWhenItsAnswerIsLost)
{
    restart("manager", "on exportRecording kill after");
    const Run run = exportTo(filePath("lost"));
    EXPECT_EQ(run.exitCode, 6) << run.errors.toStdString();
    EXPECT_TRUE(run.errors.contains(QLatin1String("is unknown"))) << run.errors.toStdString();
    EXPECT_FALSE(run.errors.contains(QLatin1String("refused"))) << run.errors.toStdString();
    restart("manager");
    EXPECT_EQ(exportTo(filePath("lost")).exitCode, 0);
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
    EXPECT_EQ(nowhere.errors,
              QLatin1String("korvectl: The folder /proc/nowhere cannot be made: No such file or directory.\n"));
}

TEST_F(ExportCommand, SaysWhatEndedItAndHowToGoOn)
{
    const QString folder = filePath("unfinished");
    restart("recorder", "on copyRecordToArchDevEx delay 1min");
    const Run silent = askFor("export REC1 RECORD --timeout 1 --to", folder);
    EXPECT_EQ(silent.exitCode, 4);
    EXPECT_EQ(silent.errors,
              QStringLiteral("korvectl: Nothing more came of the export of record %1 on REC1 within 1 s. What is there is "
                             "kept; to go on from there: korvectl export REC1 %1 --to %2\n")
                  .arg(recordId, folder));
    QProcess interrupted;
    interrupted.start(QStringLiteral(KORVECTL_PROGRAM), words("export REC1") << recordId << QStringLiteral("--to")
                                                                            << filePath("interrupted"));
    const QString begun = filePath("interrupted/") + recordId + QStringLiteral(".sigmf-meta.part");
    EXPECT_TRUE(QTest::qWaitFor([&] { return QFileInfo::exists(begun); }, patienceMs));
    interrupted.terminate();
    EXPECT_TRUE(interrupted.waitForFinished(patienceMs));
    EXPECT_EQ(interrupted.exitCode(), 4);
    EXPECT_TRUE(interrupted.readAllStandardError().contains("REC1 was interrupted. What is there is kept; "));
    restart("recorder");
    EXPECT_EQ(exportTo(folder).exitCode, 0);
}

} // namespace
