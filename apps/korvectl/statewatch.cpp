#include "apps/korvectl/statewatch.h"

#include "apps/korvectl/failure.h"

#include <QUuid>

namespace korvectl
{

StateWatch::StateWatch(Tell tell) : tell(std::move(tell)), callback(new KorveGUI::ServerCallback)
{
    callback->AddChannelStateChangeListener(this);
    registration.registerObject(QStringLiteral("KorveManager/Callbacks/") + QUuid::createUuid().toString(QUuid::WithoutBraces),
                                callback.reference());
    if (!registration.waitUntilTried())
        throw Failure(ExitCode::NotReachable,
                      QStringLiteral("The central object service does not take the name of this watch."));
}

StateWatch::~StateWatch()
{
    callback->RemoveChannelStateChangeListener(this);
}

void StateWatch::NotifyChannelStateChanged(const QString &deviceId, const QString &recordId, const QString &recordName,
                                           const KorveCommon::ChannelState::State &state)
{
    tell({deviceId, recordId, recordName, state});
}

} // namespace korvectl
