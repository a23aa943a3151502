#pragma once

#include <QHostAddress>
#include <QList>

namespace korvectl
{

/// The host that is to send something to a socket of this program, told from others by its address.
class SenderHost
{
public:
    /// @p address is a name or digits. @throws Failure for a name that has no address here.
    explicit SenderHost(const QString &address);

    /// Whether a connection from @p peer comes from there.
    bool is(const QHostAddress &peer) const;
    /// As it was given.
    const QString &text() const { return name; }

private:
    const QString name;
    QList<QHostAddress> addresses;
};

} // namespace korvectl
