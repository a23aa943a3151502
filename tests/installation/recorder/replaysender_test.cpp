#include "installation/recorder/replaysender.h"

#include "tests/installation/recorder/samplepeer.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonObject>
#include <QTemporaryDir>

#include <future>

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

using namespace installation::recorder;

namespace
{

constexpr int patienceMs = 10000;
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

std::unique_ptr<ReplaySource> eightSamples(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write("abcdefgh") == 8);
    file.close();
    Record record;
    record.sizeBytes = 8;
    record.sigmf = {{QStringLiteral("global"), QJsonObject{{QStringLiteral("core:datatype"), QStringLiteral("ru8")}}}};
    return std::make_unique<ReplaySource>(record, path);
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
