#include "tests/installation/program/installationfixture.h"

#include "tests/installation/manager/wavfile.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace
{

/// A terminal that nobody looks at.
class Terminal
{
public:
    Terminal() : descriptor(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
    {
        if (descriptor < 0 || ::grantpt(descriptor) != 0 || ::unlockpt(descriptor) != 0)
            throw std::runtime_error("no terminal");
    }
    Terminal(const Terminal &) = delete;
    ~Terminal() { ::close(descriptor); }

    QString path() const { return QString::fromLocal8Bit(::ptsname(descriptor)); }
    /// All that was written to it.
    QString content() const
    {
        QByteArray text;
        char piece[1024];
        while (const auto size = std::max<ssize_t>(0, ::read(descriptor, piece, sizeof piece)))
            text.append(piece, static_cast<int>(size));
        return QString::fromUtf8(text);
    }

private:
    const int descriptor;
};

} // namespace

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

TEST_F(Import, ShowsClientsWhereTheFrequencyChanges)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    const auto write = [](const QString &path, const QByteArray &bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    };
    write(filePath("tuned.sigmf-data"), QByteArray(4000, 's'));
    write(filePath("tuned.sigmf-meta"), R"({"global": {"core:datatype": "ci16_le", "core:sample_rate": 1000},
        "captures": [{"core:sample_start": 0, "core:frequency": 98500000, "core:datetime": "2023-11-14T22:13:20Z"},
                     {"core:sample_start": 400, "core:frequency": 100000000}]})");
    const Run done = import({filePath("tuned.sigmf-meta")});
    ASSERT_EQ(done.exitCode, 0) << done.errors.toStdString();
    const QByteArray id = done.output.trimmed().section(QStringLiteral(": "), -1).toLatin1();
    const TQ_KRV::IF_KORVE_Admin_var admin = TQ_KRV::IF_KRV_c_KRV_var(manager())->getKorveAdminInterface();
    TQ_KRV::struRECORD_DATA_var record;
    ASSERT_EQ(admin->getRecord("REC1", id.constData(), record.out()), 0u);
    ASSERT_EQ(record->indexEntries.length(), 3u);
    EXPECT_EQ(record->indexEntries[1].recordOffset, 1600u);
    EXPECT_EQ(record->indexEntries[1].timestamp, 1'700'000'000'400'000u);
    EXPECT_EQ(record->indexEntries[1].tunerFrequency, 100'000'000u);
}

TEST_F(Import, ShowsItsProgressOnATerminal)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    const Terminal terminal;
    QProcess process;
    process.setStandardErrorFile(terminal.path());
    const QString file = writeWavFile(shared->folder.path(), QStringLiteral("shown.wav"), 8000);
    process.start(QStringLiteral(INSTALLATION_PROGRAM), {QStringLiteral("import"), QStringLiteral("REC1"), file});
    ASSERT_TRUE(process.waitForFinished(20000));
    EXPECT_EQ(process.exitCode(), 0);
    const QString shown = terminal.content();
    EXPECT_TRUE(shown.contains(QRegularExpression(QStringLiteral("\rshown.wav \\[#+\\] 100 %")))) << shown.toStdString();
    EXPECT_TRUE(shown.endsWith(QLatin1String("\r\x1b[K"))) << "the bar stays";
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

TEST_F(Import, NamesAFileOnceWhenItIsRefused)
{
    const QString missing = filePath("missing.wav");
    const QString other = filePath("host.ini");
    const QString errors = import({missing, other}).errors;
    EXPECT_EQ(errors.count(missing), 1) << errors.toStdString();
    EXPECT_EQ(errors.count(other), 1) << errors.toStdString();
    EXPECT_TRUE(errors.startsWith(QStringLiteral("Not imported: cannot open %1: No such file").arg(missing)));
}

TEST_F(Import, PrintsNamesSafely)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    const QString taken = writeWavFile(shared->folder.path(), QStringLiteral("red\x1b[31m\nalert.wav"), 10);
    const Run done = import({taken, filePath("gone\x1b[2J.wav")});
    EXPECT_EQ(done.exitCode, 1);
    EXPECT_FALSE((done.output + done.errors).contains(QChar(0x1b)));
    EXPECT_EQ(done.output.count(u'\n'), 1) << done.output.toStdString();
    EXPECT_TRUE(done.output.contains(QLatin1String("red?[31m?alert.wav: R"))) << done.output.toStdString();
    EXPECT_TRUE(done.errors.contains(QLatin1String("gone?[2J.wav"))) << done.errors.toStdString();
}

TEST_F(Import, SaysThatItCouldNotNameARecord)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    const QString file = writeWavFile(shared->folder.path(), QStringLiteral("untold.wav"), 10);
    process.start(QStringLiteral(INSTALLATION_PROGRAM), {QStringLiteral("import"), QStringLiteral("REC1"), file});
    ASSERT_TRUE(process.waitForFinished(20000));
    EXPECT_EQ(process.exitCode(), 1);
    const QString errors = QString::fromUtf8(process.readAllStandardError());
    EXPECT_TRUE(errors.startsWith(QStringLiteral("Imported, but this could not be written: %1: R").arg(file)))
        << errors.toStdString();
    EXPECT_TRUE(errors.endsWith(QLatin1String(": No space left on device\n"))) << errors.toStdString();
}

TEST_F(Import, SaysThatANameIsNotUtf8)
{
    QProcess shell; // which passes on what Qt cannot
    shell.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), QStringLiteral("exec \"$0\" import REC1 \"$(printf 'a\\377.wav')\""),
                                            QStringLiteral(INSTALLATION_PROGRAM)});
    ASSERT_TRUE(shell.waitForFinished(20000));
    EXPECT_EQ(shell.exitCode(), 1);
    const QString errors = QString::fromUtf8(shell.readAllStandardError());
    EXPECT_TRUE(errors.endsWith(QLatin1String(".wav: its name is not UTF-8\n"))) << errors.toStdString();
}

TEST_F(Import, SaysThatThereIsNoSuchRecorder)
{
    const Run done = run({QStringLiteral("import"), QStringLiteral("REC9"), filePath("host.ini")});
    EXPECT_EQ(done.exitCode, 2);
    EXPECT_TRUE(done.errors.contains(QLatin1String("REC9")));
    EXPECT_TRUE(done.errors.contains(address()));
}
