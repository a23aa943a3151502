#pragma once

#include "installation/manager/callbackclients.h"
#include "installation/manager/device.h"
#include "installation/manager/managerconfiguration.h"
#include "installation/manager/recordstate.h"
#include "installation/manager/repetition.h"

namespace installation
{

/// Tells clients what records are doing and how the storage of the devices is.
///
/// A client registers a `TQ_KRV::IF_RecordStateChangeCallback` at the central object service as
/// "KorveManager/Callbacks/NAME", a `TQ_KRV::IF_KorveStatusCallback` as "KorveManager/StatusCallbacks/NAME", with a
/// name that nobody else has. It is found with the next look, told what happens from then on, and of the storage also
/// how it is. Each has a queue of its own (see CallQueue); one that is given up is unregistered. Thread: any; nothing
/// waits for a client, but for stop().
class ClientCallbacks
{
public:
    ClientCallbacks(CCO::IF_CCO_c_ptr service, const ManagerConfiguration::Timing &timing);

    void tellState(const RecordState &state);
    /// Tells what is new, of the devices that have ever answered.
    void tellStorage(const DeviceList &devices);
    /// Tells nobody anything any more, and waits for the calls that are being made.
    void stop();

private:
    static CallbackClients::Message storageMessage(const QString &device, const QString &xml);
    std::vector<CallbackClients::Message> storageNow();

    std::mutex mutex;                   // guards `storage`; nothing else is locked meanwhile
    std::map<QString, QString> storage; ///< what was told last, by device
    CallbackClients stateClients;
    CallbackClients storageClients;
    Repetition looks; // last: it uses all the others
};

} // namespace installation
