#include "installation/recorder/deviceclock.h"
#include "installation/recorder/recordererror.h"
#include "tests/installation/recorder/fulldisk.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QFile>

using namespace installation::recorder;

namespace
{

quint64 hostUs()
{
    return QDateTime::currentMSecsSinceEpoch() * 1000ull;
}

/// A clock of a device that is switched off and on.
class Clock : public testing::Test
{
protected:
    Clock() { start(); }
    void start() { clock = std::make_unique<DeviceClock>(path()); }
    QString path() const { return directory.filePath("clock"); }
    void expectNear(quint64 timeUs) const
    {
        EXPECT_GE(clock->nowUs() + 1000, timeUs);
        EXPECT_LE(clock->nowUs(), timeUs + hostUs() - beginUs + 1000);
    }

    const quint64 beginUs = hostUs(); // of the test
    QTemporaryDir directory;
    std::unique_ptr<DeviceClock> clock;
};

TEST_F(Clock, ShowsTheTimeOfTheHost)
{
    expectNear(hostUs());
}

TEST_F(Clock, GoesOnFromTheTimeThatIsSet)
{
    for (const quint64 timeUs : {quint64(0), quint64(1'000'000'000'000'000), DeviceClock::latestUs}) {
        const quint64 shown = clock->set(timeUs);
        EXPECT_GE(shown, timeUs);
        EXPECT_GE(clock->nowUs(), shown);
        expectNear(timeUs);
    }
}

TEST_F(Clock, IsNotSynchronizedWhenItIsSet)
{
    clock->set(1'000'000);
    EXPECT_FALSE(clock->isSynchronized());
    start();
    EXPECT_FALSE(clock->isSynchronized());
}

TEST_F(Clock, KeepsItsDistanceToTheHost)
{
    clock->set(5'000'000'000'000);
    start();
    expectNear(5'000'000'000'000);
    EXPECT_EQ(contentOf(directory.path()).size(), 1);
}

TEST_F(Clock, RefusesWhatIsNoDate)
{
    for (const quint64 timeUs : {DeviceClock::latestUs + 1, quint64(1) << 63, ~quint64(0)})
        EXPECT_THROW(clock->set(timeUs), RecorderError) << timeUs;
    expectNear(hostUs());
    EXPECT_TRUE(contentOf(directory.path()).isEmpty());
}

TEST_F(Clock, KeepsItsTimeWhenTheDiskIsFull)
{
    clock->set(5'000'000'000'000);
    const auto before = contentOf(directory.path());
    {
        const FullDisk fullDisk(2);
        EXPECT_THROW(clock->set(1'000'000), RecorderError);
    }
    expectNear(5'000'000'000'000);
    EXPECT_EQ(contentOf(directory.path()), before);
}

TEST_F(Clock, ShowsTheHostsTimeWhenItsFileIsDamaged)
{
    for (const QByteArray &content : {QByteArray(), QByteArray("noon"), QByteArray(100, '9'), QByteArray(30, '9')}) {
        writeFile(path(), content);
        start();
        expectNear(hostUs());
    }
}

} // namespace
