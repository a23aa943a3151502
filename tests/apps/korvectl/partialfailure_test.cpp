#include "tests/apps/korvectl/korvectlfixture.h"
#include "tests/installation/manager/wavfile.h"
#include "tests/support/waiting.h"

#include <QFile>
#include <QtTest/QTest>

namespace
{

/// The client of a host with two recorders, one of which ends meanwhile.
class KorvectlAtTwoRecorders : public KorvectlFixture
{
protected:
    static void SetUpTestSuite()
    {
        InstallationFixture::SetUpTestSuite();
        startSecondRecorder();
        ASSERT_TRUE(managerKnowsTheDevice());
        ASSERT_EQ(import({writeWavFile(shared->folder.path(), QStringLiteral("a.wav"), 10)}).exitCode, 0);
        ASSERT_TRUE(secondBecomes(true));
    }
    static void TearDownTestSuite()
    {
        second.reset();
        InstallationFixture::TearDownTestSuite();
    }

    static void startSecondRecorder()
    {
        QFile settings(filePath("second.ini"));
        ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
        settings.write("[recorder]\ndevice=REC2\n");
        settings.close();
        const auto word = [](const char *text) { return QString::fromUtf8(text); };
        second = std::make_unique<ServiceProcess>(
            QStringLiteral(INSTALLATION_PROGRAM),
            QStringList{word("--role"), word("recorder"), word("--end-with-parent"), word("--config"),
                        settings.fileName(), word("--state"), filePath("second")});
    }
    /// Waits, bounded, until the manager says so.
    static bool secondBecomes(bool available)
    {
        return QTest::qWaitFor(
            [&] {
                CORBA::ULong state = 0;
                try {
                    CORBA::string_free(TQ_KRV::IF_KRV_c_KRV_var(manager())->getDeviceInformation("REC2", state));
                } catch (const TQ_KRV::IF_KRV_c_KRV::exKRV &) { // not seen yet
                    return false;
                }
                return (state != 0) == available;
            },
            patienceMs);
    }

    static std::unique_ptr<ServiceProcess> second;
};

std::unique_ptr<ServiceProcess> KorvectlAtTwoRecorders::second;

TEST_F(KorvectlAtTwoRecorders, ListsWhatCanBeHadWhenOneDoesNotAnswer)
{
    EXPECT_EQ(ask(words("records")).exitCode, 0);
    second->kill();
    ASSERT_TRUE(secondBecomes(false));
    const Run run = ask(words("records --json"));
    EXPECT_EQ(run.exitCode, 5);
    ASSERT_EQ(array(run).size(), 1) << run.output.toStdString();
    EXPECT_TRUE(isOneSentence(run.errors)) << run.errors.toStdString();
    EXPECT_TRUE(run.errors.contains(QLatin1String("of REC2:")) && run.errors.contains(QLatin1String("not available")))
        << run.errors.toStdString();
    EXPECT_EQ(ask(words("records REC1")).exitCode, 0);
    EXPECT_EQ(ask(words("records REC2")).exitCode, 3);
}

} // namespace
