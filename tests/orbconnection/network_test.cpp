#include "tests/orbconnection/mirrorpair.h"
#include "tests/orbconnection/ownorb.h"

#include <QFile>
#include <QRegularExpression>

#include <arpa/inet.h>

namespace
{
/// The connections of this machine whose near end is port 8004 of @p address and that are established.
int connectionsTo(const QString &address)
{
    QFile table(QStringLiteral("/proc/self/net/tcp"));
    if (!table.open(QIODevice::ReadOnly))
        throw std::runtime_error("no table of connections");
    const QString nearEnd = QStringLiteral("%1:%2")
                                .arg(inet_addr(address.toLatin1().constData()), 8, 16, QLatin1Char('0'))
                                .arg(8004, 4, 16, QLatin1Char('0'));
    const QRegularExpression established(QStringLiteral(": %1 [0-9A-F]{8}:[0-9A-F]{4} 01 ").arg(nearEnd.toUpper()));
    return QString::fromLatin1(table.readAll()).count(established);
}

class MirrorOverTheOrb : public TwoTrees
{
};

TEST_F(MirrorOverTheOrb, GoesOverTheNetworkAlsoWithinOneProcess)
{
    const auto pair = MirrorPair::make(serverTree, QStringLiteral("/K"), QStringLiteral("/C"));
    pair->connect();
    pair->carry();
    EXPECT_GE(connectionsTo(OwnOrb::address()), 2); // one call waits for changes, one carries them
}
} // namespace
