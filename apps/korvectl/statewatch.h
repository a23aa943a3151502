#pragma once

#include "apps/korvectl/activation.h"

#include "connectionmanagement/ichannelstatechangedlistener.h"
#include "connectionmanagement/servercallback.h"
#include "orbconnection/serviceregistration.h"

#include <functional>

namespace korvectl
{

/// The state that a record has entered.
struct StateChange {
    QString device;
    QString record;
    QString name;
    KorveCommon::ChannelState::State state;
};

/// Tells of the states of records for as long as it lives: the manager finds it at the central object service.
///
/// Thread: main; tells from the event loop.
class StateWatch : private KorveCommon::IChannelStateChangedListener
{
public:
    using Tell = std::function<void(const StateChange &)>;

    /// Registers at once, and again for a new central object service. Blocks, at most for a call. Needs a running ORB.
    /// @throws Failure when there is no such service.
    explicit StateWatch(Tell tell);
    ~StateWatch() override;

private:
    void NotifyChannelStateChanged(const QString &deviceId, const QString &recordId, const QString &recordName,
                                   const KorveCommon::ChannelState::State &state) override;

    const Tell tell;
    Activation<TQ_KRV::IF_RecordStateChangeCallback, KorveGUI::ServerCallback> callback;
    CorbaCommon::ServiceRegistration registration;
};

} // namespace korvectl
