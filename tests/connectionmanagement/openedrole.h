#pragma once

#include "connectionmanagement/korvemanagerconnectiondata.h"
#include "orbconnection/vtconnectionobserver.h"

#include <memory>

/// A client role whose tics can be looked at.
template <typename Role> class OpenedRole : public Role
{
public:
    using Role::Role;
    using Role::ticMap;

    /// What the base class does for each subsystem.
    void connectTo(const QString &subsystem)
    {
        static_cast<KorveCommon::IServerConnectionData *>(this)->CreateVTConnectTics(subsystem);
    }
    QList<KorveCommon::KorveManagerConnectionData *> tics(const QString &subsystem) const
    {
        return ticMap.value(subsystem);
    }
    /// The tic of that type; null when there is none.
    KorveCommon::KorveManagerConnectionData *tic(const QString &subsystem, KorveCommon::ConnectionType type) const
    {
        for (KorveCommon::KorveManagerConnectionData *tic : tics(subsystem))
            if (tic->connectionType() == type)
                return tic;
        return nullptr;
    }
    QString clientPath(const QString &subsystem, KorveCommon::ConnectionType type) const
    {
        return Role::AbstractServerConnectionData::getClientBasePath(subsystem, type);
    }
};

/// What the connection of @p tic would say.
inline void comeUp(KorveCommon::KorveManagerConnectionData *tic)
{
    const std::shared_ptr<VtConnectionObserver> connection = tic->getConnection();
    Q_EMIT connection->si_connected(connection->getBaseClientPath());
}

inline void goDown(KorveCommon::KorveManagerConnectionData *tic)
{
    const std::shared_ptr<VtConnectionObserver> connection = tic->getConnection();
    Q_EMIT connection->si_disconnected(connection->getBaseClientPath());
}
