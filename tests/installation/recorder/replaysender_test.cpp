#include "installation/recorder/replaysender.h"

#include "tests/installation/recorder/samplepeer.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QFile>
#include <QJsonObject>
#include <QTemporaryDir>

#include <atomic>
#include <future>
#include <thread>

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

using namespace installation::recorder;

namespace
{

constexpr quint32 loopback = 0x7f000001;

/// While it lives, the process gets no further file descriptors.
class NoDescriptors
{
public:
    NoDescriptors()
    {
        getrlimit(RLIMIT_NOFILE, &before);
        const rlimit none{0, before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    NoDescriptors(const NoDescriptors &) = delete;
    ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &before); }

private:
    rlimit before{};
};

/// Samples of one byte.
std::unique_ptr<ReplaySource> samplesOf(const QByteArray &bytes, const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    Record record;
    record.sizeBytes = quint64(bytes.size());
    record.sigmf = {{QStringLiteral("global"), QJsonObject{{QStringLiteral("core:datatype"), QStringLiteral("ru8")}}}};
    return std::make_unique<ReplaySource>(record, path);
}

std::unique_ptr<ReplaySource> eightSamples(const QString &path)
{
    return samplesOf("abcdefgh", path);
}

/// Plays to somebody who goes, in a process that a broken pipe would end.
[[noreturn]] void playToOneWhoGoes(const QString &path)
{
    std::signal(SIGPIPE, SIG_DFL);
    std::promise<void> stopped;
    ReplaySender sender(eightSamples(path), {[&](bool isPlaying) {
                                                 if (!isPlaying)
                                                     stopped.set_value();
                                             },
                                             [] {}});
    sender.change([](ReplaySection &section) { section.setPasses(0); });
    SamplePeer peer(SamplePeer::Transport::Tcp, QStringLiteral("127.0.0.1"));
    sender.start(sender.connectTo({LLDCmodule::ifTCP, loopback, peer.port()}, 100).id);
    peer.accept().read(1);
    peer.close(); // with nothing unread, which would be another error
    stopped.get_future().wait_for(std::chrono::milliseconds(patienceMs));
    ::_exit(sender.linkInUse() ? 1 : 0);
}

TEST(ReplaySenderTest, OutlivesItsReceiver)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe"; // a process of its own, not a copy of this one
    const QTemporaryDir folder;
    EXPECT_EXIT(playToOneWhoGoes(folder.filePath(QStringLiteral("samples"))), testing::ExitedWithCode(0), "");
}

/// A replay to somebody who takes all.
class Playing : public testing::Test
{
protected:
    quint32 connect(quint32 samplesPerSecond)
    {
        const quint32 link = sender.connectTo({LLDCmodule::ifTCP, loopback, peer.port()}, samplesPerSecond).id;
        peer.accept();
        reader = std::async(std::launch::async, [this] { return peer.discardToEnd(); });
        return link;
    }
    quint64 position() const { return sender.section().position(); }
    void waitUntilItMoves(quint64 from = 0) const
    {
        const QDeadlineTimer end(patienceMs);
        while (position() == from && !end.hasExpired())
            std::this_thread::yield();
        ASSERT_NE(position(), from);
    }

    const QTemporaryDir folder;
    SamplePeer peer{SamplePeer::Transport::Tcp, QStringLiteral("127.0.0.1")};
    std::atomic<Pacer::Clock::time_point> time = Pacer::Clock::time_point(std::chrono::hours(1));
    std::future<std::uint64_t> reader; // ends when the sender has gone
    ReplaySender sender{samplesOf(QByteArray(16 << 20, 's'), folder.filePath(QStringLiteral("samples"))),
                        {[](bool) {}, [] {}},
                        [this] { return time.load(); }};
};

TEST_F(Playing, HasNothingUnderWayWhenItIsPaused)
{
    sender.change([](ReplaySection &section) { section.setPasses(0); });
    sender.swapBytes(true); // through a buffer, so that a piece is under way nearly always
    const quint32 link = connect(ReplaySender::fullSpeed);
    for (int i = 0; i < 300; ++i) {
        const quint64 from = position();
        sender.start(link);
        waitUntilItMoves(from);
        sender.pause(link);
        ASSERT_FALSE(sender.section().isUnderWay()) << "after " << i << " pauses";
    }
}

TEST_F(Playing, SendsNothingForTheTimeOfAPause)
{
    constexpr auto piece = std::chrono::milliseconds(11);
    const quint32 link = connect(1000); // ten samples in each ten milliseconds
    time = time.load() + std::chrono::milliseconds(500);
    sender.start(link);
    time = time.load() + piece;
    waitUntilItMoves();
    EXPECT_EQ(position(), 10u);
    sender.pause(link);
    time = time.load() + std::chrono::milliseconds(500);
    sender.start(link);
    time = time.load() + piece;
    waitUntilItMoves(10);
    EXPECT_EQ(position(), 20u);
}

TEST(ReplaySenderTest, SaysThatItCannotTakeAConnectionAndTriesNoFurther)
{
    const QTemporaryDir folder;
    std::promise<void> stopped;
    ReplaySender sender(eightSamples(folder.filePath(QStringLiteral("samples"))), {[&](bool isPlaying) {
                                                                                       if (!isPlaying)
                                                                                           stopped.set_value();
                                                                                   },
                                                                                   [] {}});
    const ReplaySender::Link link = sender.listenOn({LLDCmodule::ifTCP, loopback, 0}, ReplaySender::fullSpeed);
    const SamplePeer receiver(SamplePeer::Transport::Tcp, loopback, link.address.port);
    {
        const NoDescriptors full;
        sender.start(link.id);
        ASSERT_EQ(stopped.get_future().wait_for(std::chrono::milliseconds(patienceMs)), std::future_status::ready);
    }
    EXPECT_FALSE(sender.linkInUse());
    EXPECT_THROW(sender.start(link.id), LinkError);
}

} // namespace
