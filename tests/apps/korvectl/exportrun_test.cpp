#include "apps/korvectl/exportrun.h"

#include "apps/korvectl/failure.h"

#include <QCryptographicHash>
#include <QSignalSpy>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>

#include <sys/resource.h>

using namespace korvectl;
using std::chrono::milliseconds;

namespace
{

/// Files of this process cannot become longer meanwhile, as on a full disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        ::getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limited{bytes, before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;

private:
    rlimit before = {};
    void (*const handler)(int) = std::signal(SIGXFSZ, SIG_IGN);
};

const QString data = QStringLiteral("R1.sigmf-data");
const QString description = QStringLiteral("R1.sigmf-meta");
const QByteArray samples = "0123456789";

/// An export that the test plays the manager and the device of.
class Export : public testing::Test
{
protected:
    /// What a device does that is told @p target: connects, sends and closes.
    void send(const QString &target, const QByteArray &bytes)
    {
        device.connectToHost(target.section(u':', 0, 0), target.section(u':', 1).section(u'/', 0, 0).toUShort());
        ASSERT_TRUE(device.waitForConnected());
        device.write(bytes);
        ASSERT_TRUE(device.waitForBytesWritten());
        device.disconnectFromHost();
    }
    /// The description of a record that has these samples.
    void describe(ExportRun &target)
    {
        const QByteArray sum = QCryptographicHash::hash(samples, QCryptographicHash::Sha512).toHex();
        const QByteArray text = R"({"global": {"core:sha512": ")" + sum + R"("}})";
        send(target.beginFile(description, static_cast<quint64>(text.size())), text);
        target.endFile(description, true);
        ASSERT_EQ(target.complaint(), QString());
    }
    void write(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    QByteArray content() const
    {
        QFile file(folder.path(data));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    qint64 partSize() const { return QFileInfo(folder.partPath(data)).size(); }

    const QTemporaryDir place;
    const ExportFolder folder{place.path()};
    const ExportRun::Way way{{QHostAddress(QHostAddress::LocalHost), QStringLiteral("127.0.0.1")},
                             SenderHost(QStringLiteral("127.0.0.1")),
                             milliseconds(2000)};
    ExportRun run{folder, way};
    QTcpSocket device;
};

} // namespace

TEST_F(Export, IsWholeWhenAllThatWasAnnouncedHasCome)
{
    QSignalSpy over(&run, &ExportRun::si_over);
    run.setFiles({data});
    send(run.beginFile(data, 10), QByteArray(10, 'x'));
    run.endFile(data, true);
    run.end(true, QString());
    EXPECT_EQ(run.complaint(), QString());
    EXPECT_EQ(QFileInfo(folder.path(data)).size(), 10);
    EXPECT_EQ(over.count(), 1);
}

TEST_F(Export, GoesOnWhereTheLastOneEnded)
{
    describe(run);
    const QString target = run.beginFile(data, 10);
    EXPECT_TRUE(target.endsWith(QLatin1String("/0")));
    send(target, "0123");
    run.endFile(data, true);
    EXPECT_EQ(partSize(), 4);
    const QString rest = run.beginFile(data, 10);
    EXPECT_TRUE(rest.endsWith(QLatin1String("/4")));
    send(rest, "456789");
    run.endFile(data, true);
    EXPECT_EQ(run.files().last().begin, 4u);
    EXPECT_TRUE(run.files().last().isWhole);
    EXPECT_EQ(run.beginFile(data, 10), QString()) << "it is not wanted any more";
}

TEST_F(Export, FetchesSamplesFromTheirBeginningThatNoChecksumIsToldOf)
{
    write(folder.partPath(data), "0123");
    EXPECT_TRUE(run.beginFile(data, 10).endsWith(QLatin1String("/0")));
}

TEST_F(Export, DoesNotCompleteABeginningOfOtherSamples)
{
    write(folder.partPath(data), "xxxx");
    describe(run);
    send(run.beginFile(data, 10), samples.mid(4));
    run.endFile(data, true);
    EXPECT_TRUE(run.beganWrong());
    EXPECT_FALSE(QFileInfo::exists(folder.path(data)));
    ExportRun again{folder, way, ExportRun::Resume::FromTheBeginning};
    describe(again);
    send(again.beginFile(data, 10), samples);
    again.endFile(data, true);
    EXPECT_EQ(content(), samples);
    EXPECT_FALSE(again.beganWrong());
}

TEST_F(Export, FindsAWholeFileOfOtherSamples)
{
    write(folder.path(data), "0123456x89");
    describe(run);
    EXPECT_EQ(run.beginFile(data, 10), QString());
    run.end(true, QString());
    EXPECT_TRUE(run.beganWrong());
    EXPECT_NE(run.complaint(), QString());
}

TEST_F(Export, FailsWhenTheSamplesThatCameAreOthersThanTheDescriptionTells)
{
    describe(run);
    send(run.beginFile(data, 10), "xxxxxxxxxx");
    run.endFile(data, true);
    EXPECT_FALSE(run.beganWrong()) << "fetching them once more would not help";
    EXPECT_NE(run.complaint(), QString());
    EXPECT_FALSE(QFileInfo::exists(folder.path(data)));
}

TEST_F(Export, TakesNothingFromAnybodyElse)
{
    const QString target = run.beginFile(data, 10);
    QTcpSocket stranger;
    ASSERT_TRUE(stranger.bind(QHostAddress(QStringLiteral("127.0.0.2"))));
    stranger.connectToHost(QStringLiteral("127.0.0.1"), target.section(u':', 1).section(u'/', 0, 0).toUShort());
    ASSERT_TRUE(stranger.waitForConnected());
    stranger.write("xxxxxxxxxx");
    ASSERT_TRUE(stranger.waitForBytesWritten());
    send(target, samples);
    run.endFile(data, true);
    EXPECT_EQ(run.complaint(), QString());
    EXPECT_EQ(content(), samples);
}

TEST_F(Export, NamesWhoHasConnectedInsteadOfTheRecorder)
{
    const ExportRun::Way from{way.address, SenderHost(QStringLiteral("192.0.2.1")), milliseconds(100)};
    ExportRun other{folder, from};
    send(other.beginFile(data, 10), samples);
    other.endFile(data, true);
    EXPECT_TRUE(other.complaint().contains(QLatin1String("only 127.0.0.1 has connected"))) << other.complaint().toStdString();
}

TEST_F(Export, WritesThroughNoLink)
{
    const QString elsewhere = place.filePath(QStringLiteral("elsewhere"));
    write(elsewhere, "precious");
    ASSERT_TRUE(QFile::link(elsewhere, folder.partPath(data)));
    EXPECT_EQ(run.beginFile(data, 10), QString());
    EXPECT_TRUE(run.complaint().endsWith(QLatin1String("is a link."))) << run.complaint().toStdString();
    EXPECT_EQ(QFileInfo(elsewhere).size(), 8);
}

TEST_F(Export, DoesNotTakeMoreThanWasTold)
{
    send(run.beginFile(data, 3), "0123");
    run.endFile(data, true);
    EXPECT_FALSE(run.files().last().isWhole);
    EXPECT_TRUE(run.complaint().startsWith(QLatin1String("More has come for"))) << run.complaint().toStdString();
    EXPECT_FALSE(QFileInfo::exists(folder.path(data)));
}

TEST_F(Export, DoesNotTakeMoreThanWasToldAlsoPieceByPiece)
{
    QSignalSpy received(&run, &ExportRun::si_progress);
    const QString target = run.beginFile(data, 3);
    device.connectToHost(target.section(u':', 0, 0), target.section(u':', 1).section(u'/', 0, 0).toUShort());
    ASSERT_TRUE(device.waitForConnected());
    device.write("01");
    ASSERT_TRUE(received.wait());
    device.write("23");
    ASSERT_TRUE(device.waitForBytesWritten());
    run.endFile(data, true);
    EXPECT_TRUE(run.complaint().startsWith(QLatin1String("More has come for"))) << run.complaint().toStdString();
    EXPECT_EQ(partSize(), 2);
}

TEST_F(Export, LeavesNothingOfALongerFileThatWasThere)
{
    write(folder.partPath(data), "xxxxxxxxxxxx");
    describe(run);
    send(run.beginFile(data, 10), samples);
    run.endFile(data, true);
    EXPECT_EQ(run.complaint(), QString());
    EXPECT_EQ(content(), samples);
}

TEST_F(Export, DoesNotGoOnBehindTheEndOfWhatIsThere)
{
    write(folder.partPath(data), "01");
    const FileReceiver::Target target{folder.partPath(data), 4, 10};
    EXPECT_THROW(FileReceiver(target, QHostAddress(QHostAddress::LocalHost), way.sender), Failure);
    EXPECT_EQ(partSize(), 2);
}

TEST_F(Export, FetchesTheDescriptionEachTime)
{
    describe(run);
    const auto size = static_cast<quint64>(QFileInfo(folder.path(description)).size());
    EXPECT_TRUE(run.beginFile(description, size).endsWith(QLatin1String("/0")));
}

TEST_F(Export, ThatFitsNoDiskSaysSoAndNotWhatCameOfIt)
{
    const FileSizeLimit limit(4);
    send(run.beginFile(data, 10), QByteArray(10, 'x'));
    run.endFile(data, true);
    run.end(false, QStringLiteral("cannot send: Connection reset by peer"));
    EXPECT_EQ(run.complaint(), QStringLiteral("%1 cannot be written: File too large.").arg(folder.partPath(data)));
    EXPECT_EQ(partSize(), 4) << "which is there to go on from";
}

TEST_F(Export, LeavesAFileToTheOtherExportThatWritesIt)
{
    ExportRun other{folder, way};
    send(other.beginFile(data, 10), QByteArray(10, 'x'));
    EXPECT_EQ(run.beginFile(data, 10), QString());
    EXPECT_EQ(run.complaint(),
              QStringLiteral("%1 is being written by another export.").arg(folder.partPath(data)));
    other.endFile(data, true);
    EXPECT_EQ(other.complaint(), QString());
    EXPECT_EQ(QFileInfo(folder.path(data)).size(), 10);
}

TEST_F(Export, TellsWhatTheManagerSays)
{
    run.setFiles({data});
    EXPECT_TRUE(run.complaint().contains(data)) << "announced, and not there";
    run.end(false, QStringLiteral("the recorder refuses"));
    EXPECT_EQ(run.complaint(), QLatin1String("The manager says: the recorder refuses."));
    EXPECT_TRUE(run.isOver());
}

TEST_F(Export, WantsNoFileOfAnImpossibleName)
{
    EXPECT_EQ(run.beginFile(QStringLiteral("../elsewhere"), 3), QString());
    EXPECT_TRUE(run.complaint().contains(QLatin1String("no usable name")));
}
