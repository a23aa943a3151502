#include "apps/korvectl/ownaddress.h"

#include "apps/korvectl/failure.h"

#include "orbconnection/orbhandler.h"

#include <QHostInfo>

namespace korvectl
{

namespace
{

QHostAddress resolved(const QString &nameOrDigits)
{
    const QHostAddress digits(nameOrDigits);
    if (digits.protocol() == QAbstractSocket::IPv4Protocol)
        return digits;
    const QList<QHostAddress> found = QHostInfo::fromName(nameOrDigits).addresses();
    for (const QHostAddress &address : found)
        if (address.protocol() == QAbstractSocket::IPv4Protocol)
            return address;
    throw Failure(ExitCode::Failed,
                  QStringLiteral("%1 has no IPv4 address, which devices need; see KORVE_ADDRESS.").arg(nameOrDigits));
}

} // namespace

OwnAddress OwnAddress::ofReferences()
{
    const CorbaCommon::OrbSettings &settings = CorbaCommon::OrbHandler::Instance().settings();
    return {resolved(settings.address), resolved(settings.published()).toString()};
}

} // namespace korvectl
