#include "tests/apps/korvectl/recordfixture.h"

#include "tests/installation/manager/wavfile.h"
#include "tests/support/waiting.h"

#include <QFile>
#include <QJsonDocument>
#include <QtTest/QTest>

#include <stdexcept>

QString RecordFixture::recordId;

void RecordFixture::SetUpTestSuite()
{
    InstallationFixture::SetUpTestSuite();
    ASSERT_TRUE(managerKnowsTheDevice());
    const Run done = import({writeWavFile(shared->folder.path(), QStringLiteral("one second.wav"), 8000)});
    ASSERT_EQ(done.exitCode, 0) << done.errors.toStdString();
    recordId = done.output.trimmed().section(QStringLiteral(": "), -1);
}

void RecordFixture::restart(const char *role, const QByteArray &faults)
{
    QFile script(filePath("trouble.faults"));
    if (!script.open(QIODevice::WriteOnly) || script.write(faults) != faults.size())
        throw std::runtime_error("cannot write the fault script");
    script.close();
    process(role)->kill();
    process(role) = std::make_unique<ServiceProcess>(
        QStringLiteral(INSTALLATION_PROGRAM),
        argumentsOf(role) << QStringLiteral("--faults") << script.fileName());
    EXPECT_TRUE(QTest::qWaitFor([] { return askFor("record show REC1 RECORD").exitCode == 0; }, patienceMs));
}

KorvectlFixture::Run RecordFixture::askFor(const char *line, const QString &last)
{
    QStringList arguments = words(line).replaceInStrings(QStringLiteral("RECORD"), recordId);
    if (!last.isNull())
        arguments << last;
    return ask(arguments);
}

QJsonObject RecordFixture::object(const Run &run)
{
    EXPECT_EQ(run.exitCode, 0) << run.errors.toStdString();
    return QJsonDocument::fromJson(run.output.toUtf8()).object();
}

QJsonObject RecordFixture::record()
{
    return object(askFor("record show REC1 RECORD --json"));
}
