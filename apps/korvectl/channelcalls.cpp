#include "apps/korvectl/channelcalls.h"

#include "common/errorlogging.h"
#include "common/errornumber.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"
#include "korvebase/corbatoclientconverter.h"

namespace korvectl
{

namespace
{

namespace ToManager = KorveCommon::CorbaToClientConverter;
namespace number = korve::errornumber;

/// The channel handler's number for a channel that is not there.
constexpr unsigned long noChannel = 300;

const QString &namePrefix()
{
    static const QString prefix = QStringLiteral("korvectl ");
    return prefix;
}

QByteArray latin1(const QString &identifier)
{
    return identifier.toLatin1();
}

CORBA::WString_var wide(const QString &text)
{
    CORBA::WString_var units = CORBA::wstring_alloc(static_cast<CORBA::ULong>(text.size()));
    for (int position = 0; position < text.size(); ++position)
        units[static_cast<CORBA::ULong>(position)] = static_cast<CORBA::WChar>(text[position].unicode());
    units[static_cast<CORBA::ULong>(text.size())] = 0;
    return units;
}

} // namespace

QString ChannelWish::name() const
{
    return namePrefix() + QStringLiteral("%1 %2").arg(endpoint.text(), isUdp ? QStringLiteral("udp") : QStringLiteral("tcp"));
}

bool isNameOfOurs(const QString &channelName)
{
    return channelName.startsWith(namePrefix());
}

ChannelCalls::ChannelCalls(const std::shared_ptr<KorveGUI::KorveGuiToServerCorbaHandler> &handler) : handler(handler)
{
}

template <typename Request> Answer ChannelCalls::answerOf(const char *operation, const Request &request) const
{
    const KorveChannel::ErrorLogging log;
    const QString name = QLatin1String(operation);
    try {
        return {request(), false};
    } catch (const CORBA::UserException &refusal) {
        return {log.userException(refusal, name, channelId), false};
    } catch (const CORBA::PERSIST_STORE &error) {
        return {log.systemException(error, name, channelId), error.completed() != CORBA::COMPLETED_NO,
                QStringLiteral("the recorder manager cannot keep the channel: its disk is full, or fails")};
    } catch (const CORBA::SystemException &error) {
        return {log.systemException(error, name, channelId), error.completed() != CORBA::COMPLETED_NO};
    }
}

Answer ChannelCalls::call(const char *operation, const std::function<void(TQ_KRV::IF_KRV_c_Chan_ptr)> &request)
{
    return answerOf(operation, [&] {
        request(channel.in());
        return number::success;
    });
}

Answer ChannelCalls::add(const ChannelWish &wish)
{
    return answerOf("registerReceiverChannel", [&] {
        const TQ_KRV::IF_KRV_c_KRV_var manager = handler->GetKorveInterface();
        if (CORBA::is_nil(manager))
            return number::serverNotAvailable;
        CORBA::String_var told;
        channel = manager->registerReceiverChannel(
            TQ_KRV::IF_KRV_c_ChanMan::_nil(), ToManager::convertDataRateClassFromXml(wish.rate),
            ToManager::convertDataFormatFromXml(wish.format), wish.isForRecording, !wish.isForRecording,
            latin1(wish.name()), latin1(wish.device), wish.isUdp ? TQ_KRV::UDP_IF : TQ_KRV::TCP_IF,
            latin1(wish.endpoint.text()), told.out());
        channelId = QString::fromUtf8(told);
        return number::success;
    });
}

Answer ChannelCalls::find(const QString &id)
{
    return answerOf("getKorveChannelInterface", [&] {
        const TQ_KRV::IF_KRV_c_KRV_var manager = handler->GetKorveInterface();
        if (CORBA::is_nil(manager))
            return number::serverNotAvailable;
        channel = manager->getKorveChannelInterface(latin1(id)); // the handler would give the first one for all
        channelId = id;
        return CORBA::is_nil(channel) ? noChannel : number::success;
    });
}

Answer ChannelCalls::setSampleRate(quint64 rate, quint64 sampleBytes)
{
    return call("setRequestedSampleRate", [&](TQ_KRV::IF_KRV_c_Chan_ptr ours) {
        ours->setRequestedSampleRate(rate, static_cast<CORBA::UShort>(sampleBytes));
    });
}

Answer ChannelCalls::startReplaying(const ReplayPart &part)
{
    return call("startReplaying", [&](TQ_KRV::IF_KRV_c_Chan_ptr ours) {
        ours->startReplaying(latin1(part.device), latin1(part.record),
                             ToManager::convertDataRateClassFromXml(part.rate), part.range.begin, part.range.end,
                             static_cast<CORBA::ULong>(part.count));
    });
}

bool ChannelCalls::disableReplays()
{
    bool isReplaying = false;
    call("setReplayFlag", [&](TQ_KRV::IF_KRV_c_Chan_ptr ours) {
        try {
            ours->setReplayFlag(false);
        } catch (const TQ_KRV::IF_KRV_c_Chan::exChan &refusal) { // an answer here, and no failure
            isReplaying = refusal.kind == TQ_KRV::IF_KRV_c_Chan::Channel_Is_Replaying;
            if (!isReplaying)
                throw;
        }
    });
    return !isReplaying;
}

Answer ChannelCalls::startRecording(const RecordingOptions &options, const QString &name)
{
    return call("startRecording", [&](TQ_KRV::IF_KRV_c_Chan_ptr ours) {
        ours->startRecording(static_cast<CORBA::ULong>(options.loopMiB), wide(name),
                             static_cast<CORBA::ULong>(options.durationS));
    });
}

Answer ChannelCalls::stopRecording(const QString &comment)
{
    return call("stopRecording", [&](TQ_KRV::IF_KRV_c_Chan_ptr ours) { ours->stopRecording(wide(comment)); });
}

Answer ChannelCalls::remove()
{
    return call("removeChannel", [](TQ_KRV::IF_KRV_c_Chan_ptr ours) { ours->removeChannel(); });
}

} // namespace korvectl
