#pragma once

#include "connectionmanagement/abstractserverconnectiondata.h"

namespace KorveCommon
{
/// A client of one subsystem that follows the devices, and the channel whose id stands in a value of the tree.
class KORVEBASE_EXPORT LumbaServerConnectionData : public AbstractServerConnectionData
{
    Q_OBJECT
public:
    /// Connects to @p subsystem. Blocks.
    LumbaServerConnectionData(const QString &prefix, const QString &subsystem);
    ~LumbaServerConnectionData() override;

    bool ConnectToAllSubsystems() override;
    /// False, too, when there is no channel to connect to now; the path is kept.
    bool SetChannelId_ValuePath(const QString &path) override;
    QString GetChannelId_ValuePath() override;

private:
    void CreateVTConnectTics(const QString &subsystem) override;
    bool SetupChannel(const VtConnectData &data, const QString &subsystem);
};
} // namespace KorveCommon
