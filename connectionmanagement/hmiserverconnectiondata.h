#pragma once

#include "connectionmanagement/abstractserverconnectiondata.h"

namespace KorveCommon
{
/// A display station: watches the devices and the server of every subsystem.
class KORVEBASE_EXPORT HMIServerConnectionData : public AbstractServerConnectionData
{
    Q_OBJECT
public:
    /// @p name is the configuration file's; may be empty.
    explicit HMIServerConnectionData(const QString &name);
    ~HMIServerConnectionData() override;

private:
    void CreateVTConnectTics(const QString &subsystem) override;
    /// False when a tic leads to that host and port; @p found is then its subsystem.
    bool HostAndPortNotInList(const VtConnectData &data, QString &found) const;
    void noteSharedHosts(const QString &subsystem);
};
} // namespace KorveCommon
