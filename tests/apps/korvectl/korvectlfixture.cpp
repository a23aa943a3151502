#include "tests/apps/korvectl/korvectlfixture.h"

#include "tests/support/waiting.h"

#include <QJsonDocument>
#include <QProcess>

KorvectlFixture::Run KorvectlFixture::ask(const QStringList &arguments, const QString &centralService)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!centralService.isEmpty())
        environment.insert(QStringLiteral("KORVE_CCO"), centralService);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(KORVECTL_PROGRAM), arguments);
    if (!process.waitForFinished(patienceMs))
        throw std::runtime_error("korvectl does not end");
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QJsonArray KorvectlFixture::array(const Run &run)
{
    return QJsonDocument::fromJson(run.output.toUtf8()).array();
}

bool KorvectlFixture::isOneSentence(const QString &text)
{
    return text.startsWith(QLatin1String("korvectl: ")) && text.endsWith(QLatin1String(".\n")) &&
           text.count(u'\n') == 1;
}
