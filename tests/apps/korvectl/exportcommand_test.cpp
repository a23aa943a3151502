#include "tests/apps/korvectl/recordfixture.h"

#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QtTest/QTest>

namespace
{

constexpr int patienceMs = 30000;

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
    /// Again, with these words behind those of the fixture.
    static void startRecorder(const QStringList &further)
    {
        shared->recorder->kill();
        shared->recorder =
            std::make_unique<ServiceProcess>(QStringLiteral(INSTALLATION_PROGRAM), argumentsOf("recorder") + further);
        EXPECT_TRUE(
            QTest::qWaitFor([] { return askFor("record show REC1 RECORD").exitCode == 0; }, patienceMs));
    }
    static void haveTheRecorderSendLate()
    {
        QFile script(filePath("late.faults"));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write("on copyRecordToArchDevEx delay 1min\n");
        script.close();
        startRecorder({QStringLiteral("--faults"), script.fileName()});
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
    EXPECT_EQ(nowhere.errors,
              QLatin1String("korvectl: The folder /proc/nowhere cannot be made: No such file or directory.\n"));
}

TEST_F(ExportCommand, SaysWhatEndedItAndHowToGoOn)
{
    const QString folder = filePath("unfinished");
    haveTheRecorderSendLate();
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
    startRecorder({});
    EXPECT_EQ(exportTo(folder).exitCode, 0);
}

} // namespace
