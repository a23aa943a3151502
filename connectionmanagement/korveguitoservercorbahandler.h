#pragma once

#include "connectionmanagement/ichannelstatechangedlistener.h"
#include "connectionmanagement/irecordstatechangedlistener.h"
#include "idl/korvemanager.hh"
#include "korvebase/korvebase_export.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QVector>

#include <memory>
#include <vector>

namespace KORVE_XML
{
class KORVE_RecordData;
}

namespace KorveCommon
{
class AbstractServerConnectionData;
}

namespace KorveGUI
{
/// Holds the references of one recorder manager: fetched when all tics of its subsystem are up, dropped when they fall.
///
/// The caller releases every reference returned; nil is a valid answer.
/// Thread: main, and GetKorveInterface() any while nothing changes. Calls to the manager block.
/// Errors: traced; answered by nil, false or an error number.
class KORVEBASE_EXPORT KorveGuiToServerCorbaHandler : public QObject, public KorveCommon::IChannelStateChangedListener
{
    Q_OBJECT
public:
    using ConnectionDataPtr = std::shared_ptr<KorveCommon::AbstractServerConnectionData>;

    /// @p data must not be null. With a @p workstation, the manager is the one of that workstation's local subsystem.
    KorveGuiToServerCorbaHandler(const QString &subsystem, const ConnectionDataPtr &data, const QString &workstation);
    ~KorveGuiToServerCorbaHandler() override;

    void Shutdown();
    bool ReconnectToServer();
    QString GetCurrentSubsystem() const;
    bool IsConnected() const;
    ConnectionDataPtr GetServerConnectionData() const { return serverConnectionData; }
    QString GetKorveRootPath() const;

    TQ_KRV::IF_KRV_c_KRV_ptr GetKorveInterface() const;
    /// The first device that is asked for decides for all, until the connection is dropped.
    TQ_KRV::IF_KORVE_Replay_ptr GetReplayInterface(const QString &deviceId);
    /// As GetReplayInterface(). Throws what the ORB raises.
    TQ_KRV::IF_KRV_c_Chan_ptr GetKorveChannelInterface(const QString &channelId);
    TQ_KRV::IF_KORVE_Admin_ptr GetKorveAdminInterface();
    /// Appends the records of the device. Returns one of the numbers in recordlisterror.h.
    unsigned long getAllRecords(const QString &deviceId, QVector<KORVE_XML::KORVE_RecordData> &records);

    /// Borrows @p listener until it is removed. Null and one that is known already change nothing.
    void AddRecordStateChangeListener(KorveCommon::IRecordStateChangedListener *listener);
    void RemoveRecordStateChangeListener(KorveCommon::IRecordStateChangedListener *listener);
    /// Tells the listeners of that device; they may remove themselves meanwhile.
    void NotifyChannelStateChanged(const QString &deviceId, const QString &recordId, const QString &recordName,
                                   const KorveCommon::ChannelState::State &state) override;

public Q_SLOTS:
    /// Drops the connection and makes a new one, again and again while the tics of @p subsystem are up.
    void sl_initializeConnection(const QString &subsystem);
    void sl_initializeDirectConnection();
    void sl_disconnect(const QString &subsystem);

private:
    bool ConnectToServer();
    bool DisconnectFromServer();
    bool connectToSubsystem(QString &error);
    bool connectToWorkstation(QString &error);
    template <typename Resolve> bool takeManager(const QString &path, const Resolve &resolve, QString &error);
    void TraceConnectionFailure(bool connected, QString &workstation, QString error);

    std::vector<KorveCommon::IRecordStateChangedListener *> recordStateListeners;
    QString subsystem; ///< the last that was given
    QString workstation;
    const ConnectionDataPtr serverConnectionData;
    TQ_KRV::IF_KRV_c_KRV_var korveInterface;
    TQ_KRV::IF_KORVE_Replay_var replayInterface;
    TQ_KRV::IF_KRV_c_Chan_var channelInterface;
    TQ_KRV::IF_KORVE_Admin_var adminInterface;
    QHash<QString, int> connectionFailures;
};
} // namespace KorveGUI
