#include "tests/apps/korvectl/recordfixture.h"

#include <QDir>
#include <QProcess>

#include <QImage>

namespace
{

class SpectrumCommand : public RecordFixture
{
};

TEST_F(SpectrumCommand, WritesAPicture)
{
    const QString path = filePath("spectrum.png");
    const Run run = askFor("spectrum REC1 RECORD --fft 256 --lines 20 --png", path);
    ASSERT_EQ(run.exitCode, 0) << run.errors.toStdString();
    const QImage picture(path);
    EXPECT_EQ(picture.size(), QSize(129, 20)); // of real samples
    EXPECT_TRUE(run.output.contains(QLatin1String("129 x 20 points"))) << run.output.toStdString();
    EXPECT_TRUE(run.output.contains(QLatin1String("0.000000 MHz to 0.004000 MHz"))) << run.output.toStdString();
}

TEST_F(SpectrumCommand, WritesAPictureOfAnyName)
{
    const QString path = filePath("100%1 of %2.png");
    const Run run = askFor("spectrum REC1 RECORD --fft 256 --lines 20 --png", path);
    EXPECT_TRUE(run.output.startsWith(path + QLatin1String(": 129 x 20 points\n"))) << run.output.toStdString();
    EXPECT_EQ(QImage(path).size(), QSize(129, 20));
}

TEST_F(SpectrumCommand, IsAsWideAsTheTerminal)
{
    qputenv("COLUMNS", "60");
    qputenv("LINES", "12");
    const Run run = askFor("spectrum REC1 RECORD");
    qunsetenv("COLUMNS");
    qunsetenv("LINES");
    const QStringList lines = run.output.split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2 + 8) << run.output.toStdString() << run.errors.toStdString();
    EXPECT_EQ(lines.last().size(), 60);
}

TEST_F(SpectrumCommand, DrawsInLettersWhereThereIsNoPicture)
{
    const Run run = askFor("spectrum REC1 RECORD --lines 5");
    ASSERT_EQ(run.exitCode, 0) << run.errors.toStdString();
    const QStringList lines = run.output.split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2 + 5) << run.output.toStdString();
    EXPECT_EQ(lines.last().size(), 80);
}

TEST_F(SpectrumCommand, TellsNumbersToPrograms)
{
    const QJsonObject spectrum =
        object(askFor("spectrum REC1 RECORD --fft 64 --lines 3 --window kaiser --range 0.5s: --json"));
    EXPECT_EQ(spectrum[QStringLiteral("startBytes")].toInt(), 8000);
    const QJsonArray lines = spectrum[QStringLiteral("lines")].toArray();
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines.first().toObject()[QStringLiteral("dBFS")].toArray().size(), 33);
    EXPECT_EQ(lines.first().toObject()[QStringLiteral("positionBytes")].toInt(), 8000);
}

TEST_F(SpectrumCommand, TellsWhyThereIsNone)
{
    const Run tooLong = askFor("spectrum REC1 RECORD --fft 8192");
    EXPECT_EQ(tooLong.exitCode, 3);
    EXPECT_TRUE(isOneSentence(tooLong.errors)) << tooLong.errors.toStdString();
    EXPECT_TRUE(tooLong.errors.contains(QLatin1String("Id: 10002 : "))) << tooLong.errors.toStdString();
    const Run behind = askFor("spectrum REC1 RECORD --range 0:16002");
    EXPECT_EQ(behind.exitCode, 1);
    EXPECT_TRUE(isOneSentence(behind.errors)) << behind.errors.toStdString();
    const Run nowhere = askFor("spectrum REC1 RECORD --lines 1 --png /nowhere/at/all.png");
    EXPECT_EQ(nowhere.exitCode, 4);
    EXPECT_EQ(nowhere.errors,
              QLatin1String("korvectl: /nowhere/at/all.png cannot be written: No such file or directory.\n"));
    EXPECT_EQ(askFor("spectrum REC1 RECORD --lines 1 --png /dev/full").errors,
              QLatin1String("korvectl: /dev/full cannot be written: No space left on device.\n"));
    EXPECT_EQ(askFor("spectrum REC1 RECORD --lines 65536 --fft 1024 --json").exitCode, 1) << "gigabytes of text";
}

TEST_F(SpectrumCommand, LeavesNoFileOfAPictureThatCannotBeWritten)
{
    const QString path = filePath("too large.png");
    QProcess limited; // to files of no bytes, as on a full disk
    limited.start(QStringLiteral("sh"), {QStringLiteral("-c"),
                                         QStringLiteral("trap '' XFSZ; ulimit -f 0; exec \"$0\" \"$@\""),
                                         QStringLiteral(KORVECTL_PROGRAM), QStringLiteral("spectrum"),
                                         QStringLiteral("REC1"), recordId, QStringLiteral("--png"), path});
    ASSERT_TRUE(limited.waitForFinished());
    EXPECT_EQ(limited.exitCode(), 4);
    EXPECT_TRUE(limited.readAllStandardError().contains("cannot be written: File too large"));
    EXPECT_TRUE(QDir(shared->folder.path()).entryList({QStringLiteral("too large*")}).isEmpty());
}

TEST_F(SpectrumCommand, SaysThatTheDiskHasBecomeFullMeanwhile)
{
    QProcess limited; // to files shorter than the picture
    limited.start(QStringLiteral("sh"), {QStringLiteral("-c"),
                                         QStringLiteral("trap '' XFSZ; ulimit -f 4; exec \"$0\" \"$@\""),
                                         QStringLiteral(KORVECTL_PROGRAM), QStringLiteral("spectrum"),
                                         QStringLiteral("REC1"), recordId, QStringLiteral("--lines"),
                                         QStringLiteral("400"), QStringLiteral("--png"), filePath("large.png")});
    ASSERT_TRUE(limited.waitForFinished());
    EXPECT_EQ(limited.exitCode(), 4);
    const QByteArray errors = limited.readAllStandardError();
    EXPECT_TRUE(errors.endsWith("large.png cannot be written: File too large.\n")) << errors.constData();
}

} // namespace
