#include "tests/apps/korvectl/recordfixture.h"

#include "tests/installation/manager/wavfile.h"

#include <QJsonDocument>

QString RecordFixture::recordId;

void RecordFixture::SetUpTestSuite()
{
    InstallationFixture::SetUpTestSuite();
    ASSERT_TRUE(managerKnowsTheDevice());
    const Run done = import({writeWavFile(shared->folder.path(), QStringLiteral("one second.wav"), 8000)});
    ASSERT_EQ(done.exitCode, 0) << done.errors.toStdString();
    recordId = done.output.trimmed().section(QStringLiteral(": "), -1);
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
