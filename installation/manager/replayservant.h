#pragma once

#include "installation/manager/replayrun.h"

#include "idl/korvemanager.hh"

#include <memory>

namespace installation
{

/// Replay for the clients of the manager: finds a channel, and tells in a number what came of it.
///
/// One object for all devices: each operation names its own. What a recorder that went silent may have done raises
/// `CORBA::COMM_FAILURE`, which may be completed.
/// Thread: any; see ReplayRun.
class ReplayServant : public POA_TQ_KRV::IF_KORVE_Replay
{
public:
    explicit ReplayServant(std::shared_ptr<ReplayRun> replays) : replays(std::move(replays)) {}

    CORBA::ULong StartReplay(const char *deviceId, const char *recordId, TQ_KRV::eDATARATE_CLASS rate,
                             CORBA::ULongLong startPosition, CORBA::ULongLong stopPosition,
                             CORBA::ULong count) override;
    CORBA::ULong StartReplayReceivers(const char *deviceId, const char *recordId, TQ_KRV::eDATARATE_CLASS rate,
                                      CORBA::ULongLong startPosition, CORBA::ULongLong stopPosition, CORBA::ULong count,
                                      TQ_KRV::interfaceTypeEnum type) override;
    CORBA::ULong PauseReplay(const char *deviceId, const char *recordId) override;
    CORBA::ULong ContinueReplay(const char *deviceId, const char *recordId) override;
    CORBA::ULong StopReplay(const char *deviceId, const char *recordId) override;

private:
    template <typename Command> CORBA::ULong answer(const char *operation, const char *recordId, Command command) const;

    const std::shared_ptr<ReplayRun> replays;
};

} // namespace installation
