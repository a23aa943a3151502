#include "installation/manager/replayservant.h"

#include "coresupport/trace.h"

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/replayservant";

QString textOf(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

CORBA::ULong ReplayServant::StartReplay(const char *deviceId, const char *recordId, TQ_KRV::eDATARATE_CLASS rate,
                                        CORBA::ULongLong startPosition, CORBA::ULongLong stopPosition,
                                        CORBA::ULong count)
{
    return answer("StartReplay", recordId, [&] {
        replays->start({textOf(deviceId), textOf(recordId), rate, startPosition, stopPosition, count}, {});
    });
}

CORBA::ULong ReplayServant::StartReplayReceivers(const char *deviceId, const char *recordId,
                                                 TQ_KRV::eDATARATE_CLASS rate, CORBA::ULongLong startPosition,
                                                 CORBA::ULongLong stopPosition, CORBA::ULong count,
                                                 TQ_KRV::interfaceTypeEnum type)
{
    return answer("StartReplayReceivers", recordId, [&] {
        replays->start({textOf(deviceId), textOf(recordId), rate, startPosition, stopPosition, count}, type);
    });
}

CORBA::ULong ReplayServant::PauseReplay(const char *deviceId, const char *recordId)
{
    return answer("PauseReplay", recordId, [&] { replays->pause(textOf(deviceId), textOf(recordId)); });
}

CORBA::ULong ReplayServant::ContinueReplay(const char *deviceId, const char *recordId)
{
    return answer("ContinueReplay", recordId, [&] { replays->goOn(textOf(deviceId), textOf(recordId)); });
}

CORBA::ULong ReplayServant::StopReplay(const char *deviceId, const char *recordId)
{
    return answer("StopReplay", recordId, [&] { replays->stop(textOf(deviceId), textOf(recordId)); });
}

template <typename Command>
CORBA::ULong ReplayServant::answer(const char *operation, const char *recordId, Command command) const
{
    try {
        command();
        return 0;
    } catch (const ChannelFailure &failure) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("%1 of record %2: %3")
                .arg(QLatin1String(operation), textOf(recordId), failure.text());
        });
        if (failure.isOutcomeUnknown()) // a number would say that nothing was done
            throw CORBA::COMM_FAILURE(0, CORBA::COMPLETED_MAYBE);
        return failure.number();
    }
}

} // namespace installation
