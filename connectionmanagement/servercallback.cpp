#include "connectionmanagement/servercallback.h"

#include "connectionmanagement/ichannelstatechangedlistener.h"

#include "appruntime/threadswitchingadministration.h"
#include "korvebase/wiretext.h"

#include <QCoreApplication>
#include <QThread>

#include <algorithm>
#include <optional>

using KorveCommon::IChannelStateChangedListener;
using ThreadingHelper::ThreadSwitchingAdministration;

namespace ChannelState = KorveCommon::ChannelState;

namespace KorveGUI
{
namespace
{
constexpr char sourceName[] = "connectionmanagement/servercallback";

std::optional<ChannelState::State> stateOf(TQ_KRV::eRECORD_STATUS status)
{
    switch (status) {
    case TQ_KRV::rsREADY_FOR_REPLAY:
        return ChannelState::ReadyForReplay;
    case TQ_KRV::rsREPLAYING:
        return ChannelState::Replaying;
    case TQ_KRV::rsIDLE:
        return ChannelState::Idle;
    case TQ_KRV::rsREADY_FOR_RECORDING:
    case TQ_KRV::rsRECORDING:
    case TQ_KRV::rsINDEXING:
    case TQ_KRV::rsCOPYING:
    case TQ_KRV::rsRESTORING:
    case TQ_KRV::rsACTIVE:
        break;
    }
    return std::nullopt;
}

/// Whether listeners may be added and removed here: nothing guards them.
bool isMainThread()
{
    const QCoreApplication *const application = QCoreApplication::instance();
    return !application || application->thread() == QThread::currentThread();
}

/// A manager that keeps to the declared code set sends Latin-1, another one UTF-8.
QString nameIn(const char *bytes)
{
    const QString name = KorveCommon::wire::identifier(bytes);
    return name.contains(QChar::ReplacementCharacter) ? QString::fromLatin1(bytes) : name;
}
} // namespace

ServerCallback::ServerCallback() : listeners(std::make_shared<Listeners>()) {}

ServerCallback::~ServerCallback() = default;

void ServerCallback::NotifyStateChange(const char *deviceId, const char *recordId, const char *recordName,
                                       TQ_KRV::eRECORD_STATUS status)
{
    const auto state = stateOf(status);
    if (!state)
        return;
    using KorveCommon::wire::identifier;
    const auto tell = [guard = std::weak_ptr(listeners), device = identifier(deviceId), record = identifier(recordId),
                       name = nameIn(recordName), newState = *state] {
        NotifyChannelStateChangedInMainThread(guard, device, record, name, newState);
    };
    ThreadSwitchingAdministration::CreateThreadSwitchingHandler(QLatin1String(sourceName))
        ->post(ThreadingHelper::RunInMainThreadEvent(tell));
}

void ServerCallback::NotifyChannelStateChangedInMainThread(const std::weak_ptr<Listeners> &listeners,
                                                           const QString &first, const QString &second,
                                                           const QString &third, const ChannelState::State &state)
{
    const auto known = listeners.lock();
    if (!known)
        return;
    const Listeners copy = *known; // one may remove itself meanwhile
    for (IChannelStateChangedListener *listener : copy)
        listener->NotifyChannelStateChanged(first, second, third, state);
}

void ServerCallback::AddChannelStateChangeListener(IChannelStateChangedListener *listener)
{
    Q_ASSERT(isMainThread());
    if (listener && std::find(listeners->begin(), listeners->end(), listener) == listeners->end())
        listeners->push_back(listener);
}

void ServerCallback::RemoveChannelStateChangeListener(IChannelStateChangedListener *listener)
{
    Q_ASSERT(isMainThread());
    const auto known = std::find(listeners->begin(), listeners->end(), listener);
    if (known != listeners->end())
        listeners->erase(known);
}
} // namespace KorveGUI
