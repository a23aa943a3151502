#pragma once

#include "connectionmanagement/iserverconnectiondata.h"

#include <QHash>
#include <QList>
#include <QStringList>

struct VtConnectData;

namespace CorbaCommon
{
class CentralServiceManager;
}

namespace KorveCommon
{
class KorveManagerConnectionData;

/// Finds the recorder manager of each subsystem through the central object service, holds the value-tree connections
/// ("tics") to it, and says when all tics of a subsystem are up. Which tics there are is for the subclass to decide.
///
/// Nothing is connected before the central object service knows a manager, or the application calls Initialize().
class KORVEBASE_EXPORT AbstractServerConnectionData : public IServerConnectionData
{
    Q_OBJECT
public:
    /// Reads the configuration file @p configurationName; none for an empty name.
    explicit AbstractServerConnectionData(const QString &configurationName);
    ~AbstractServerConnectionData() override;

    /// The name of the manager's main interface at the central object service; an empty @p subsystem is the local one.
    static QString GetKorveOrbConnectionPath(const QString &subsystem);
    /// Empty when the central object service does not answer. Blocks.
    static QString GetLocalSubsystemName();
    /// Finds the manager's host and address; @p data gets the default port. A host name that is there already is used
    /// without asking for the manager. Blocks, up to 10 seconds.
    static bool GetIPConnectionInformation(const QString &subsystem, VtConnectData &data);
    static bool GetFirstIPAddressOfHostName(VtConnectData &data);

    void Initialize(const QString &subsystem) override;
    IVtClient *getVtClient(const QString &subsystem, ConnectionType type) override;
    IVtClient *getVtClient(ConnectionType type) override;
    bool SetChannelId_ValuePath(const QString &path) override;
    QString GetChannelId_ValuePath() override;
    bool SetChannelId(const QString &channelId) override;
    QString GetChannelId() override;
    std::shared_ptr<KorveConfiguration> GetConfiguration() override;
    QString GetBasePath(const QString &deviceId) override;
    QString GetDeviceBasePath(const QString &deviceId) override;
    QString GetStatusPath(const QString &deviceId) override;
    QString GetBitePath(const QString &deviceId) override;
    bool IsConnected(const QString &subsystem) override;
    bool IsChannelConnected() override;
    bool IsDeviceConnected() override;
    bool IsServerConnected() override;
    bool ConnectToAllSubsystems() override;
    void ResetVtClientConnection() override;

    /// The path of the tree, on this side, that the tic mirrors to; "/" when there is no such tic.
    QString getClientBasePath(const QString &subsystem, ConnectionType type) const;
    /// Where the tic leads to; empty when there is no such tic.
    VtConnectData getConnData(const QString &subsystem, ConnectionType type) const;
    QString GetCurrentSubsystem() const { return currentSubsystem; }

    // contract: slot order
    /// What the central object service knows, or else the local one.
    virtual QStringList GetSubsystemList();

public Q_SLOTS:
    virtual void sl_notifyServerAvailablity(bool available, const QString &name); // contract: spelled so
    virtual void sl_currentSubsystemChanged(const QString &subsystem);
    virtual void sl_onConnected(const QString &subsystem);

public:
    void Update(Observable *subject, TChangeCode code) override; // takes a place of its own in the table, the last

Q_SIGNALS:
    void si_korveOnWorkstation(const QString &subsystem, const QString &workstation);
    void ChannelConnectionEstablished(const QString &subsystem);
    void ChannelConnectionDisconnected(const QString &subsystem);
    void ConnectionChanged(const QString &subsystem);
    void si_deviceNodeAdded(const QString &subsystem);
    void si_allTicsConnected(const QString &subsystem);
    void si_allTicsDisconnected(const QString &subsystem);

protected:
    void Initialize() override;

    bool containsSubsystemInMap(const QString &subsystem) const;
    /// Removes the tics of one type; nobody hears of it.
    void resetConnection(const QString &subsystem, ConnectionType type);
    /// Whether a tic of that type is up; an empty @p subsystem is the configuration's current one.
    bool isConnected(ConnectionType type, const QString &subsystem);

    bool hasTics(const QString &subsystem) const;
    /// Makes a tic and adds it to the map; its signals are for the caller to connect.
    KorveManagerConnectionData *addTic(const QString &subsystem, ConnectionType type, const QString &serverPath,
                                       const QString &clientPath, const VtConnectData &address);
    using TicSignal = void (KorveManagerConnectionData::*)(const QString &);
    using Report = void (AbstractServerConnectionData::*)(const QString &);
    /// Makes @p report of what @p tic says when the connection's own signal has returned, unless the tic is gone then.
    void reportLater(KorveManagerConnectionData *tic, TicSignal signal, Report report);
    /// Makes the tic to the devices, whose changes are handled when the connection's own signal has returned.
    void addDeviceTic(const QString &subsystem, const QString &clientPath, const VtConnectData &address);
    /// Makes the tic to a channel in the place of the one before. What it mirrors goes with the connection.
    void replaceChannelTic(const QString &subsystem, const QString &channelId, const QString &clientPath,
                           const VtConnectData &address);

    QHash<QString, QList<KorveManagerConnectionData *>> ticMap; ///< owns its tics
    std::shared_ptr<KorveConfiguration> configuration;
    QString currentSubsystem;
    QHash<QString, bool> allTicsConnected; ///< what was last found
    std::unique_ptr<CorbaCommon::CentralServiceManager> centralServiceManager;
    QString channelId;
    QString channelIdValuePath;

private:
    using Tics = QList<KorveManagerConnectionData *>;

    bool contains(const QString &subsystem, QLatin1String traceText) const;
    KorveManagerConnectionData *findTic(const QString &subsystem, ConnectionType type) const;
    void adoptSubsystem(const QString &configured);
};
} // namespace KorveCommon
