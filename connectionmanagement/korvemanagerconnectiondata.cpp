#include "connectionmanagement/korvemanagerconnectiondata.h"

#include "orbconnection/vtconnectionobserver.h"
#include "valuetreelib/node.h"

#include <QPointer>

#include <utility>

namespace KorveCommon
{
using Tic = KorveManagerConnectionData;

KorveManagerConnectionData::KorveManagerConnectionData(std::shared_ptr<VtConnectionObserver> newConnection,
                                                       ConnectionType type, const QString &subsystem)
    : connection(std::move(newConnection)), type(type), ownSubsystem(subsystem), node(*this)
{
    connect(connection.get(), &VtConnectionObserver::si_connected, this, &Tic::onConnected);
    connect(connection.get(), &VtConnectionObserver::si_disconnected, this, &Tic::onDisconnected);
    connect(connection.get(), &VtConnectionObserver::si_clientTerminating, this, &Tic::onClientTerminating);
}

KorveManagerConnectionData::KorveManagerConnectionData(const KorveManagerConnectionData &other)
    : QObject(), IObserver(), connection(other.connection), subsystems(other.subsystems), type(other.type),
      connected(other.connected), ownSubsystem(other.ownSubsystem), node(*this)
{
    if (other.node)
        node.GetFromTree(other.node->GetPathName());
}

KorveManagerConnectionData::~KorveManagerConnectionData()
{
    // The connection may die with us, and would say so to a half of us.
    connection->disconnect(this);
}

void KorveManagerConnectionData::Update(Observable *subject, TChangeCode code)
{
    if (code == ChangeCodeChildAdded && node && subject == node.Get())
        tell({&Tic::si_deviceNodeAdded});
}

void KorveManagerConnectionData::onConnected(const QString &)
{
    if (connected)
        return;
    connected = true;
    switch (type) {
    case ChannelConnection:
        tell({&Tic::ChannelConnectionEstablished, &Tic::ConnectionChanged});
        break;
    case DeviceConnection:
        node.GetFromTree(connection->getBaseClientPath());
        tell({&Tic::DevicesConnectionEstablished, &Tic::ConnectionChanged, &Tic::si_deviceNodeAdded});
        break;
    case ServerConnection:
        tell({&Tic::KorveServerConnectionEstablished, &Tic::ConnectionChanged});
        break;
    }
}

void KorveManagerConnectionData::onDisconnected(const QString &)
{
    if (!connected)
        return;
    connected = false;
    switch (type) {
    case ChannelConnection:
        tell({&Tic::ChannelConnectionDisconnected, &Tic::ConnectionChanged});
        break;
    case DeviceConnection:
        tell({&Tic::DevicesConnectionDisconnected, &Tic::ConnectionChanged});
        break;
    case ServerConnection:
        tell({&Tic::KorveServerConnectionDisconnected, &Tic::ConnectionChanged});
        break;
    }
}

void KorveManagerConnectionData::onClientTerminating()
{
    connected = false;
}

void KorveManagerConnectionData::tell(std::initializer_list<Signal> signalsInOrder)
{
    const QPointer<Tic> self(this);
    const QString name = ownSubsystem;
    for (const Signal signal : signalsInOrder)
        if (self)
            Q_EMIT(this->*signal)(name);
}
} // namespace KorveCommon
