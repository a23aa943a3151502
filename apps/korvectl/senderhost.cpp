#include "apps/korvectl/senderhost.h"

#include "apps/korvectl/failure.h"

#include <QHostInfo>
#include <QNetworkInterface>

#include <algorithm>

namespace korvectl
{

namespace
{

bool isOfThisHost(const QHostAddress &address)
{
    return address.isLoopback() || QNetworkInterface::allAddresses().contains(address);
}

} // namespace

SenderHost::SenderHost(const QString &address) : name(address)
{
    const QHostAddress digits(address);
    addresses = digits.isNull() ? QHostInfo::fromName(address).addresses() : QList<QHostAddress>{digits};
    if (addresses.isEmpty())
        throw Failure(ExitCode::NotReachable, QStringLiteral("%1 has no address that this host knows.").arg(address));
    // A host that connects to a loopback address of its own comes from this one, whatever its others are.
    if (std::any_of(addresses.begin(), addresses.end(), isOfThisHost))
        addresses << QHostAddress(QHostAddress::LocalHost);
}

bool SenderHost::is(const QHostAddress &peer) const
{
    return std::any_of(addresses.begin(), addresses.end(), [&](const QHostAddress &address) {
        return address.isEqual(peer, QHostAddress::ConvertV4MappedToIPv4);
    });
}

} // namespace korvectl
