#pragma once

#include "connectionmanagement/abstractserverconnectiondata.h"
#include "orbconnection/vtconnectdata.h"
#include "tests/connectionmanagement/openedrole.h"

/// A client role that makes one tic of each type that it is told, to an address where nobody is.
class Station : public KorveCommon::AbstractServerConnectionData
{
public:
    using Tic = KorveCommon::KorveManagerConnectionData;
    using AbstractServerConnectionData::containsSubsystemInMap;
    using AbstractServerConnectionData::Initialize;
    using AbstractServerConnectionData::isConnected;
    using AbstractServerConnectionData::resetConnection;
    using AbstractServerConnectionData::ticMap;

    explicit Station(const QString &address, const QString &configurationName = QString())
        : AbstractServerConnectionData(configurationName), address(address)
    {
    }

    void CreateVTConnectTics(const QString &subsystem) override
    {
        created.append(subsystem);
        const VtConnectData data{QStringLiteral("nobody"), address, VtConnectData::defaultPort};
        for (const KorveCommon::ConnectionType type : types) {
            Tic *const tic = addTic(subsystem, type, QStringLiteral("/Server"), clientPath(subsystem, type), data);
            connect(tic, &Tic::ConnectionChanged, this, &AbstractServerConnectionData::sl_onConnected);
        }
    }
    static QString clientPath(const QString &subsystem, KorveCommon::ConnectionType type)
    {
        return QStringLiteral("/Client/%1/%2").arg(subsystem, QString::number(type));
    }

    /// A subsystem in the map that has no tics.
    void addEmptySubsystem(const QString &subsystem) { ticMap[subsystem]; }
    QStringList knownSubsystems() const { return ticMap.keys(); }
    QList<Tic *> tics(const QString &subsystem) const { return ticMap.value(subsystem); }

    QList<KorveCommon::ConnectionType> types{KorveCommon::DeviceConnection, KorveCommon::ServerConnection};
    QStringList created; ///< all that CreateVTConnectTics() was called with

private:
    const QString address;
};
