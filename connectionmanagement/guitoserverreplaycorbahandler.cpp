#include "connectionmanagement/guitoserverreplaycorbahandler.h"

#include "common/errorlogging.h"
#include "connectionmanagement/abstractserverconnectiondata.h"
#include "common/errornumber.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "connectionmanagement/remotecall.h"
#include "connectionmanagement/remotetext.h"

#include "korvebase/corbatoclientconverter.h"

using KorveCommon::AbstractServerConnectionData;
using TQ_KRV::IF_KORVE_Replay;
using TQ_KRV::IF_KORVE_Replay_ptr;

namespace errornumber = korve::errornumber;
namespace ToManager = KorveCommon::CorbaToClientConverter;

namespace KorveGUI
{
using remote::id;

namespace
{
/// contract: worded as failures of a channel; a user exception, which the manager never declares, has no branch
unsigned long numberOf(const RemoteFailure &failure, const char *operation, const QString &deviceId)
{
    const KorveChannel::ErrorLogging log;
    return failure.system ? log.systemException(*failure.system, QLatin1String(operation), deviceId)
                          : log.unspecifiedError(QLatin1String(operation), deviceId);
}
} // namespace

GuiToServerReplayCorbaHandler::GuiToServerReplayCorbaHandler(
    const std::shared_ptr<KorveGuiToServerCorbaHandler> &guiHandler)
    : guiHandler(guiHandler)
{
    connect(guiHandler->GetServerConnectionData().get(), &AbstractServerConnectionData::ConnectionChanged, this,
            &GuiToServerReplayCorbaHandler::Slot_UpdateConnection);
}

GuiToServerReplayCorbaHandler::~GuiToServerReplayCorbaHandler() = default;

bool GuiToServerReplayCorbaHandler::Initialize(const QString &newDeviceId)
{
    deviceId = newDeviceId;
    if (!guiHandler->IsConnected() && !guiHandler->ReconnectToServer())
        return false;
    replayInterface = guiHandler->GetReplayInterface(deviceId);
    return !CORBA::is_nil(replayInterface);
}

bool GuiToServerReplayCorbaHandler::IsServerAvailable()
{
    return !CORBA::is_nil(replayInterface) || Initialize(deviceId);
}

void GuiToServerReplayCorbaHandler::Slot_UpdateConnection(const QString &subsystem)
{
    if (subsystem != guiHandler->GetCurrentSubsystem())
        return;
    replayInterface = IF_KORVE_Replay::_nil();
    Initialize(deviceId);
}

template <typename Request>
unsigned long GuiToServerReplayCorbaHandler::call(const char *operation, const Request &request)
{
    outcomeUnknown = false;
    if (!IsServerAvailable())
        return errornumber::serverNotAvailable;
    const auto made = [&]() -> unsigned long { return request(replayInterface.in()); };
    return callOr(made, [&](const RemoteFailure &failure) {
        outcomeUnknown = failure.mayHaveTakenEffect();
        return numberOf(failure, operation, deviceId);
    });
}

unsigned long GuiToServerReplayCorbaHandler::StartReplay(const QString &device, const QString &recordId,
                                                         const DataRate &rate, unsigned long long start,
                                                         unsigned long long stop, unsigned long count)
{
    return call("StartReplay", [&](IF_KORVE_Replay_ptr replay) {
        return replay->StartReplay(id(device), id(recordId), ToManager::convertDataRateClassFromXml(rate), start, stop,
                                   static_cast<CORBA::ULong>(count));
    });
}

unsigned long GuiToServerReplayCorbaHandler::StartReplay(const QString &device, const QString &recordId,
                                                         const DataRate &rate, unsigned long long start,
                                                         unsigned long long stop, unsigned long count,
                                                         const InterfaceType &interfaceType)
{
    return call("StartReplay", [&](IF_KORVE_Replay_ptr replay) { // contract: traced like the other one
        return replay->StartReplayReceivers(id(device), id(recordId), ToManager::convertDataRateClassFromXml(rate),
                                            start, stop, static_cast<CORBA::ULong>(count),
                                            ToManager::convertKorveInterfaceTypeFromXml(interfaceType));
    });
}

unsigned long GuiToServerReplayCorbaHandler::PauseReplay(const QString &device, const QString &recordId)
{
    return call("PauseReplay",
                [&](IF_KORVE_Replay_ptr replay) { return replay->PauseReplay(id(device), id(recordId)); });
}

unsigned long GuiToServerReplayCorbaHandler::ContinueReplay(const QString &device, const QString &recordId)
{
    return call("ContinueReplay",
                [&](IF_KORVE_Replay_ptr replay) { return replay->ContinueReplay(id(device), id(recordId)); });
}

unsigned long GuiToServerReplayCorbaHandler::StopReplay(const QString &device, const QString &recordId)
{
    return call("StopReplay",
                [&](IF_KORVE_Replay_ptr replay) { return replay->StopReplay(id(device), id(recordId)); });
}
} // namespace KorveGUI
