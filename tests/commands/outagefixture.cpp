#include "tests/commands/outagefixture.h"

#include "orbconnection/orbhandler.h"
#include "tests/installation/manager/wavfile.h"

#include <QElapsedTimer>

void OutageFixture::setUp(std::chrono::milliseconds callLimit, int records)
{
    InstallationFixture::SetUpTestSuite();
    CorbaCommon::OrbHandler::Instance().setCallTimeout(callLimit);
    ASSERT_TRUE(managerKnowsTheDevice());
    const QString file = writeWavFile(shared->folder.path(), QStringLiteral("one.wav"), World::recordBytes / 2);
    QStringList files;
    for (int number = 0; number < records; ++number)
        files << file;
    ASSERT_EQ(import(files).exitCode, 0);
}

std::chrono::microseconds OutageFixture::timeOf(const std::function<void()> &work)
{
    QElapsedTimer clock;
    clock.start();
    work();
    return std::chrono::microseconds(clock.nsecsElapsed() / 1000);
}

void OutageFixture::check(const CommandUnderFire &command, World &world, int round, unsigned long number)
{
    const int effects = command.effects(world, round);
    SCOPED_TRACE(testing::Message() << command.name << ", round " << round << ", number " << number);
    EXPECT_LE(effects, 1) << "it was done more than once";
    if (number == 0) {
        EXPECT_EQ(effects, 1) << "it says that it was done";
    } else if (!command.onlyAsks && !command.outcomeIsUnknown(world)) {
        EXPECT_EQ(effects, 0) << "it does not say that it may have been done";
    }
}
