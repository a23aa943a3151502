#include "connectionmanagement/hmiserverconnectiondata.h"

#include "connectionmanagement/connectionnames.h"
#include "connectionmanagement/korvemanagerconnectiondata.h"

#include "korvebase/korveconfiguration.h"
#include "korvebase/valuetreepaths.h"
#include "orbconnection/vtconnectionobserver.h"

namespace KorveCommon
{
HMIServerConnectionData::HMIServerConnectionData(const QString &name) : AbstractServerConnectionData(name)
{
    connect(configuration.get(), &KorveConfiguration::signalSubsystemChanged, this,
            &HMIServerConnectionData::sl_currentSubsystemChanged);
}

HMIServerConnectionData::~HMIServerConnectionData() = default;

void HMIServerConnectionData::CreateVTConnectTics(const QString &subsystem)
{
    using Tic = KorveManagerConnectionData;
    const QString name = korve::name::keyOf(subsystem);
    VtConnectData address;
    if (!GetIPConnectionInformation(subsystem, address))
        return;
    if (hasTics(name)) {
        noteSharedHosts(name);
        return;
    }
    // The prefix of the configuration has no say here.
    const QString root = korve::path::subSystems + QLatin1Char('/') + name;
    addDeviceTic(name, root + korve::path::device, address);
    Tic *const server = addTic(name, ServerConnection, korve::path::command, root + korve::path::command, address);
    connect(server, &Tic::ConnectionChanged, this, &HMIServerConnectionData::ConnectionChanged);
    connect(server, &Tic::ConnectionChanged, this, &HMIServerConnectionData::sl_onConnected);
}

void HMIServerConnectionData::noteSharedHosts(const QString &subsystem)
{
    const auto tics = ticMap.value(subsystem);
    for (KorveManagerConnectionData *tic : tics) {
        QString found; // contract: maybe the tic's own subsystem, and once more with every repetition
        if (!HostAndPortNotInList(tic->getConnection()->connData(), found))
            tic->subsystemListEntry().append(found);
    }
}

bool HMIServerConnectionData::HostAndPortNotInList(const VtConnectData &data, QString &found) const
{
    found.clear();
    for (auto entry = ticMap.constBegin(); entry != ticMap.constEnd(); ++entry) {
        for (const KorveManagerConnectionData *tic : entry.value()) {
            const VtConnectData known = tic->getConnection()->connData();
            if (known.hostName == data.hostName && known.port == data.port) {
                found = entry.key();
                return false;
            }
        }
    }
    return true;
}
} // namespace KorveCommon
