#pragma once

#include "connectionmanagement/connectiontype.h"
#include "coresupport/iobserver.h"
#include "korvebase/korvebase_export.h"

#include <QObject>
#include <QString>

#include <memory>

class IVtClient;

namespace KorveCommon
{
class KorveConfiguration;

/// Where the recorders are, and whether their value trees are reachable.
///
/// Thread: main.  Errors: traced; answered by false, an empty text, null or "/".
class KORVEBASE_EXPORT IServerConnectionData : public QObject, public IObserver
{
    Q_OBJECT
public:
    IServerConnectionData();
    ~IServerConnectionData() override;

    // contract: slot order
protected:
    /// Connects to all subsystems, unless that has been done for the configuration's current one. Blocks.
    virtual void Initialize() = 0;

public:
    /// Makes @p subsystem the current one, then as Initialize().
    virtual void Initialize(const QString &subsystem) = 0;
    /// The connection of the first tic of that type; borrowed.
    virtual IVtClient *getVtClient(const QString &subsystem, ConnectionType type) = 0;
    /// Of any one subsystem.
    virtual IVtClient *getVtClient(ConnectionType type) = 0;
    /// Connects to the channel whose id stands in the value at @p path. False for an empty path.
    virtual bool SetChannelId_ValuePath(const QString &path) = 0;
    /// With "/" behind it.
    virtual QString GetChannelId_ValuePath() = 0;
    virtual bool SetChannelId(const QString &channelId) = 0;
    virtual QString GetChannelId() = 0;
    virtual std::shared_ptr<KorveConfiguration> GetConfiguration() = 0;
    /// Ends in "/", as GetStatusPath() does.
    virtual QString GetBasePath(const QString &deviceId) = 0;
    virtual QString GetDeviceBasePath(const QString &deviceId) = 0;
    virtual QString GetStatusPath(const QString &deviceId) = 0;
    virtual QString GetBitePath(const QString &deviceId) = 0;
    /// Whether all tics of @p subsystem are up; one without tics is connected, too.
    virtual bool IsConnected(const QString &subsystem) = 0;
    /// Whether the current subsystem has a tic of that type that is up.
    virtual bool IsChannelConnected() = 0;
    virtual bool IsDeviceConnected() = 0;
    virtual bool IsServerConnected() = 0;
    virtual bool ConnectToAllSubsystems() = 0;
    virtual void CreateVTConnectTics(const QString &subsystem) = 0;
    /// Drops all tics. Says nothing to anybody.
    virtual void ResetVtClientConnection() = 0;
};
} // namespace KorveCommon
