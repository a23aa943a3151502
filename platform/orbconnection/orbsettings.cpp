#include "orbconnection/orbsettings.h"

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
    // The host goes into a URL, so nothing may be in it that means something there.
    static const QRegularExpression form(QStringLiteral("^([A-Za-z0-9._-]+|\\[[0-9A-Fa-f:.]+\\])(?::([0-9]{1,5}))?$"));
    const QRegularExpressionMatch match = form.match(hostAndPort);
    const int port = match.captured(2).isEmpty() ? OrbSettings::centralServicePort : match.captured(2).toInt();
    if (!match.hasMatch() || port < 1 || port > 65535)
        return QString();
    // 1.2: whoever is asked may then answer with all that this version can do.
    return QStringLiteral("corbaloc::1.2@%1:%2/CCO").arg(match.captured(1), QString::number(port));
}
} // namespace CorbaCommon
