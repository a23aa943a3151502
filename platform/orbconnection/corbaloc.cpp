#include "orbconnection/corbaloc.h"

#include <QRegularExpression>

namespace CorbaCommon
{
QString corbaloc(const QString &host, int port, const char *key)
{
    // The host goes into a URL, so nothing may be in it that means something there.
    static const QRegularExpression name(
        QRegularExpression::anchoredPattern(QStringLiteral("[A-Za-z0-9._-]+|\\[[0-9A-Fa-f:.]+\\]")));
    const bool needsBrackets = host.count(u':') > 1 && !host.startsWith(u'[');
    const QString safeHost = needsBrackets ? u'[' + host + u']' : host;
    if (!name.match(safeHost).hasMatch() || port < 1 || port > 65535)
        return QString();
    // 1.2: whoever is asked may then answer with all that this version can do.
    return QStringLiteral("corbaloc::1.2@%1:%2/%3").arg(safeHost, QString::number(port), QLatin1String(key));
}
} // namespace CorbaCommon
