#include "tests/commands/world.h"
#include "tests/installation/manager/wavfile.h"
#include "tests/installation/program/installationfixture.h"

#include <QProcess>

namespace
{

/// The program that the documents show.
class CommentExample : public InstallationFixture
{
protected:
    static void SetUpTestSuite()
    {
        InstallationFixture::SetUpTestSuite();
        ASSERT_TRUE(managerKnowsTheDevice());
        ASSERT_EQ(import({writeWavFile(shared->folder.path(), QStringLiteral("one.wav"), 10)}).exitCode, 0);
    }
    static Run runExample(const QString &record)
    {
        QProcess client;
        client.start(QStringLiteral(SETCOMMENT_PROGRAM), {QStringLiteral("REC1"), record, QStringLiteral("from here")});
        EXPECT_TRUE(client.waitForFinished(30000));
        return {client.exitCode(), QString::fromUtf8(client.readAllStandardOutput()),
                QString::fromUtf8(client.readAllStandardError())};
    }
};

TEST_F(CommentExample, SetsTheComment)
{
    const QString record = recordIds().value(0);
    EXPECT_EQ(runExample(record).exitCode, 0);
    EXPECT_EQ(World(record).recordName(), "from here");
}

TEST_F(CommentExample, SaysWhatIsTheMatter)
{
    const Run run = runExample(QStringLiteral("R0"));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors.toStdString(),
                testing::HasSubstr("Id: 10012 : The specified record Id doesn't match any record. R0\n"));
    EXPECT_THAT(run.errors.toStdString(), testing::Not(testing::HasSubstr("Nobody knows")));
}

TEST_F(CommentExample, SaysThatNobodyAnswers)
{
    shared->manager->kill();
    const Run run = runExample(QStringLiteral("R0"));
    shared->manager = start("manager");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors.toStdString(), testing::HasSubstr("No recorder manager answers"));
}

} // namespace
