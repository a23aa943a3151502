#pragma once

#include "connectionmanagement/abstractserverconnectiondata.h"

namespace KorveCommon
{
/// A receiver's control program: attached to the recorder manager of one workstation, it follows either the devices or
/// the connection and one channel.
class KORVEBASE_EXPORT ReceiverToServerConnectionData : public AbstractServerConnectionData
{
    Q_OBJECT
public:
    /// The value at @p serverValuePath, if it is there, names the manager's workstation. Connects if the central object
    /// service answers. @p direct: follow the devices. Blocks.
    ReceiverToServerConnectionData(const QString &prefix, const QString &serverValuePath, bool direct);
    ~ReceiverToServerConnectionData() override;

    using AbstractServerConnectionData::Initialize;

    /// Follows another channel, or none. False when there is nothing to connect to; always when following the devices.
    bool SetChannelId(const QString &channelId) override;
    QString GetChannelId() override;
    QString GetDeviceBasePath(const QString &deviceId) override;
    QStringList GetSubsystemList() override;

protected:
    void Initialize() override;

private:
    void CreateVTConnectTics(const QString &subsystem) override;
    bool GetServerVtConnectionData(VtConnectData &data) const;
    bool SetupChannel(const VtConnectData &data, const QString &subsystem);
    void addConnectionTic(const QString &subsystem, const VtConnectData &data);

    QString subsystem;
    QString connectedServer;
    int mode; ///< 1: the devices; 0: the connection and a channel
};
} // namespace KorveCommon
