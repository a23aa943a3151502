#include "tests/apps/korvectl/recordfixture.h"

namespace
{

class RecordCommand : public RecordFixture
{
protected:
    static QJsonArray notes(const char *what)
    {
        return array(askFor(qPrintable(QStringLiteral("record %1 list REC1 RECORD --json").arg(QLatin1String(what)))));
    }
    static std::string textOf(const QJsonValue &note)
    {
        return note.toObject()[QStringLiteral("text")].toString().toStdString();
    }
    static void isRefused(const Run &run, const char *number)
    {
        EXPECT_EQ(run.exitCode, 3) << run.errors.toStdString();
        EXPECT_EQ(run.output, QString());
        EXPECT_TRUE(isOneSentence(run.errors) && run.errors.contains(QLatin1String(number)))
            << run.errors.toStdString();
    }
};

constexpr char satellite[] = "\xf0\x9f\x93\xa1 K\xc3\xb6ln \xe6\x9d\xb1";

TEST_F(RecordCommand, ShowsAllOfARecord)
{
    const Run run = askFor("record show REC1 RECORD");
    ASSERT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_TRUE(run.output.contains(recordId));
    EXPECT_TRUE(run.output.contains(QLatin1String("16.0 kB (16000 bytes)"))) << run.output.toStdString();
    const QJsonObject shown = record();
    EXPECT_EQ(shown[QStringLiteral("device")].toString(), QLatin1String("REC1"));
    EXPECT_EQ(shown[QStringLiteral("sizeBytes")].toInt(), 16000);
    const QJsonObject first = shown[QStringLiteral("index")].toArray().first().toObject();
    EXPECT_EQ(first[QStringLiteral("sampleRateHz")].toInt(), 8000);
}

TEST_F(RecordCommand, SetsACommentOfAnyLetters)
{
    const QString comment = QString::fromUtf8(satellite);
    const Run run = askFor("record comment REC1 RECORD", comment);
    EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
    EXPECT_EQ(record()[QStringLiteral("name")].toString(), comment);
}

TEST_F(RecordCommand, CutsACommentToTheTerminal)
{
    ASSERT_EQ(askFor("record comment REC1 RECORD", QString(300, u'x')).exitCode, 0);
    EXPECT_TRUE(askFor("record show REC1 RECORD").output.contains(QString(300, u'x')));
    qputenv("COLUMNS", "100");
    const QStringList lines = askFor("record show REC1 RECORD").output.split(u'\n');
    qunsetenv("COLUMNS");
    for (const QString &line : lines)
        EXPECT_LE(line.size(), 100) << line.toStdString();
    EXPECT_TRUE(lines.contains(QStringLiteral("comment      ") + QString(84, u'x') + QStringLiteral("...")));
}

TEST_F(RecordCommand, ForbidsAndAllowsDeletion)
{
    for (const char *const state : {"off", "on"}) {
        const Run run = askFor("record deletable REC1 RECORD", QLatin1String(state));
        EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
        EXPECT_EQ(record()[QStringLiteral("deletable")].toBool(), state == std::string("on"));
    }
}

TEST_F(RecordCommand, KeepsAHistory)
{
    const int before = notes("history").size();
    EXPECT_EQ(askFor("record history add REC1 RECORD", QString::fromUtf8(satellite)).exitCode, 0);
    ASSERT_EQ(notes("history").size(), before + 1);
    EXPECT_EQ(textOf(notes("history").last()), satellite);
    const QString time = notes("history").last().toObject()[QStringLiteral("time")].toString();
    EXPECT_EQ(askFor("record history remove REC1 RECORD", time).exitCode, 0);
    EXPECT_EQ(notes("history").size(), before);
    isRefused(askFor("record history remove REC1 RECORD", time), "has no entry of");
}

TEST_F(RecordCommand, KeepsBookmarks)
{
    ASSERT_EQ(askFor("record bookmarks add REC1 RECORD +0.25s", QString::fromUtf8(satellite)).exitCode, 0);
    const QJsonArray marked = notes("bookmarks");
    ASSERT_EQ(marked.size(), 1);
    EXPECT_EQ(textOf(marked.first()), satellite);
    const auto beginUs = static_cast<qint64>(record()[QStringLiteral("beginUs")].toDouble());
    EXPECT_EQ(static_cast<qint64>(marked.first().toObject()[QStringLiteral("timeUs")].toDouble()), beginUs + 250000);
    EXPECT_TRUE(askFor("record bookmarks list REC1 RECORD").output.contains(QLatin1String("+0:00:00.250")));
    isRefused(askFor("record bookmarks add REC1 RECORD +0.25s again"), "Id: 10034 : The bookmark you are adding");
    const Run removed = askFor("record bookmarks remove REC1 RECORD", QString::number(beginUs + 250000));
    EXPECT_EQ(removed.exitCode, 0) << removed.errors.toStdString();
    EXPECT_TRUE(notes("bookmarks").isEmpty());
    isRefused(askFor("record bookmarks remove REC1 RECORD +0.25s"), "no bookmark");
}

TEST_F(RecordCommand, DeletesARecordUnlessThatIsForbidden)
{
    const Run imported = import({filePath("one second.wav")});
    const QString id = imported.output.trimmed().section(QStringLiteral(": "), -1);
    ASSERT_TRUE(recordIds().contains(id)) << imported.errors.toStdString();
    ASSERT_EQ(ask(words("record deletable REC1") << id << QStringLiteral("off")).exitCode, 0);
    isRefused(askFor("record delete REC1", id), "its deletion is forbidden");
    ASSERT_EQ(ask(words("record deletable REC1") << id << QStringLiteral("on")).exitCode, 0);
    const Run deleted = askFor("record delete REC1", id);
    EXPECT_EQ(deleted.exitCode, 0) << deleted.errors.toStdString();
    EXPECT_FALSE(recordIds().contains(id));
}

TEST_F(RecordCommand, DoesNotTellADeletionAsRefusedThatWasNotAnswered)
{
    const Run imported = import({filePath("one second.wav")});
    const QString id = imported.output.trimmed().section(QStringLiteral(": "), -1);
    ASSERT_EQ(ask(words("record deletable REC1") << id << QStringLiteral("off")).exitCode, 0);
    restart("manager", "on manager deleteRecord delay 3s once");
    const Run late = askFor("record delete --timeout 1 REC1", id);
    EXPECT_EQ(late.exitCode, 6) << late.errors.toStdString();
    EXPECT_FALSE(late.errors.contains(QLatin1String("refused"))) << late.errors.toStdString();
    restart("manager");
}

TEST_F(RecordCommand, CopiesSections)
{
    const QJsonObject copied = object(askFor("record copy REC1 RECORD 0:2kB 0.5s:0.75s --name parts --json"));
    const QString copy = copied[QStringLiteral("copy")].toString();
    const QJsonObject made = object(ask(words("record show --json REC1") << copy));
    EXPECT_EQ(made[QStringLiteral("sizeBytes")].toInt(), 2000 + 4000);
    EXPECT_EQ(made[QStringLiteral("name")].toString(), QLatin1String("parts"));
    isRefused(askFor("record copy REC1 RECORD 0:4kB 2kB:6kB"), "Id: 10027 : ");
    EXPECT_EQ(askFor("record copy REC1 RECORD 0:16kB 2s:3s").exitCode, 1) << "behind the end";
}

TEST_F(RecordCommand, NamesTheDoctorWhereRecordsAreRefused)
{
    restart("manager", "on manager getAllRecords raise exKRV Request_Failed");
    const Run refused = askFor("records REC1");
    EXPECT_EQ(refused.exitCode, 3);
    EXPECT_TRUE(isOneSentence(refused.errors)) << refused.errors.toStdString();
    EXPECT_TRUE(refused.errors.endsWith(QLatin1String("`korvectl doctor` looks for the cause.\n")))
        << refused.errors.toStdString();
    restart("manager");
}

TEST_F(RecordCommand, SaysThatARecordIsUnknown)
{
    for (const char *const line : {"record show REC1", "record delete REC1", "record bookmarks list REC1"})
        isRefused(askFor(line, QStringLiteral("R-no")), "Id: 501 : ");
    isRefused(askFor("record deletable REC1 R-no on"), "Id: 10012 : ");
}

TEST_F(RecordCommand, SaysThatTheOutcomeIsUnknownAndHowToCheckIt)
{
    shared->recorder->suspend(); // so that the manager does not answer before the client has lost its patience
    const Run run = askFor("record comment REC1 RECORD --timeout 1", QStringLiteral("late"));
    shared->recorder->resume();
    EXPECT_EQ(run.exitCode, 6) << run.errors.toStdString();
    EXPECT_EQ(run.output, QString());
    EXPECT_FALSE(run.errors.contains(QLatin1String("failed"))) << run.errors.toStdString();
    EXPECT_TRUE(run.errors.contains(QLatin1String("is unknown")) && run.errors.contains(QLatin1String("Id: 210 : ")));
    const QString check = run.errors.trimmed().section(QStringLiteral("Check it with: korvectl "), -1);
    EXPECT_EQ(check, QStringLiteral("record show REC1 %1").arg(recordId));
    EXPECT_EQ(ask(check.split(u' ')).exitCode, 0);
}

TEST_F(RecordCommand, IsCompletedByTheServices)
{
    const Run offered = ask({QStringLiteral("complete"), QStringLiteral("--"),
                             QStringLiteral("korvectl record show REC1 "), QString::fromLatin1("")});
    EXPECT_TRUE(offered.output.split(u'\n').contains(recordId)) << offered.output.toStdString();
}

TEST_F(RecordCommand, ReadsTheClock)
{
    const QJsonObject before = object(askFor("time get REC1 --json"));
    EXPECT_LT(std::abs(before[QStringLiteral("aheadS")].toDouble()), 60);
    const Run run = askFor("time get REC1");
    EXPECT_TRUE(run.output.startsWith(QLatin1String("DEVICE"))) << run.output.toStdString();
    EXPECT_EQ(askFor("time get REC9").exitCode, 3);
}

TEST_F(RecordCommand, SetsTheClock)
{
    const QJsonObject set = object(askFor("time set REC1 2030-01-01T00:00:00 --json"));
    EXPECT_TRUE(set[QStringLiteral("time")].toString().startsWith(QLatin1String("2030-01-01T00:0")));
    EXPECT_FALSE(set[QStringLiteral("synchronized")].toBool());
    const QJsonObject back = object(askFor("time set REC1 now --json"));
    EXPECT_LT(std::abs(back[QStringLiteral("aheadS")].toDouble()), 60);
}

} // namespace
