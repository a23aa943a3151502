#include "orbconnection/orbsettings.h"

#include "orbconnection/corbaloc.h"

#include <QRegularExpression>

namespace CorbaCommon
{
namespace
{
QString fromVariable(const char *name, const char *otherwise)
{
    const QString text = qEnvironmentVariable(name).trimmed();
    return text.isEmpty() ? QLatin1String(otherwise) : text;
}
} // namespace

OrbSettings OrbSettings::fromEnvironment()
{
    OrbSettings settings;
    settings.address = fromVariable("KORVE_ADDRESS", "127.0.0.1");
    settings.centralService = fromVariable("KORVE_CCO", "127.0.0.1:8003");
    return settings;
}

QString centralServiceReference(const QString &hostAndPort)
{
    static const QRegularExpression withPort(
        QRegularExpression::anchoredPattern(QStringLiteral("(.*[^:]):([0-9]{1,5})")));
    const QRegularExpressionMatch match = withPort.match(hostAndPort);
    const bool isHostAlone = !match.hasMatch() || (hostAndPort.count(u':') > 1 && !hostAndPort.contains(u']'));
    if (isHostAlone)
        return corbaloc(hostAndPort, OrbSettings::centralServicePort, "CCO");
    return corbaloc(match.captured(1), match.captured(2).toInt(), "CCO");
}
} // namespace CorbaCommon
