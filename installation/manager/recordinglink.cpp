#include "installation/manager/recordinglink.h"

#include "installation/manager/channelmanager.h"
#include "installation/manager/devicerate.h"
#include "installation/cco/orbaccess.h"
#include "installation/manager/recordview.h"
#include "installation/manager/replaylink.h"

namespace installation
{

namespace
{

constexpr CORBA::ULong byStream = 0;
constexpr CORBA::ULong byDatagrams = 1;

} // namespace

RecordingLink RecordingLink::create(TQ_KORVE::IF_Control_ptr recorder, const ChannelSettings &settings, quint32 loopMib,
                                    std::chrono::milliseconds limit)
{
    const auto nobody = TQ_KORVE_IT::IF_Korve_IT::_nil();
    const auto rate = deviceRateOf(settings.rate).value_or(TQ_KORVE::drHF_20k);
    const auto additional = settings.additionalRate ? deviceRateOf(*settings.additionalRate) : std::nullopt;
    const TQ_KORVE::eDATA_FORMAT format = deviceFormatOf(settings.format);
    const TQ_KORVE::IF_RecordingSession_var session =
        additional ? recorder->createRecordingSessionEx(rate, *additional, loopMib, format, nobody)
                   : recorder->createRecordingSession(rate, loopMib, format, nobody);
    return RecordingLink(session.in(), limit);
}

RecordingLink::RecordingLink(const ChannelRun &run, std::chrono::milliseconds limit)
    : RecordingLink(CORBA::Object_var(referenceFrom(run.session)), limit)
{
}

RecordingLink::RecordingLink(CORBA::Object_ptr object, std::chrono::milliseconds limit)
{
    if (CORBA::is_nil(object))
        throw CORBA::OBJECT_NOT_EXIST(0, CORBA::COMPLETED_NO);
    session = withCallLimit<TQ_KORVE::IF_RecordingSession>(object, limit);
    receiver = withCallLimit<LLDCmodule::LLDC_Interface_Receiver>(object, limit);
}

QString RecordingLink::recordId() const
{
    return QString::fromUtf8(CORBA::String_var(session->getId()).in());
}

QString RecordingLink::reference() const
{
    return textOfReference(session);
}

quint32 RecordingLink::connectTo(const TQ_KRV::struNetIf &source, quint32 sampleRate)
{
    const LLDCmodule::struConnectionParams params{linkKindOf(source.interfaceType), source.address, source.port,
                                                  source.parameter};
    return receiver->connectToIf(params, sampleRate);
}

quint32 RecordingLink::listen(quint32 sampleRate, bool datagrams, quint16 port)
{
    return session->setupNetworkServerEx(sampleRate, datagrams ? byDatagrams : byStream, port);
}

bool RecordingLink::end(const QString &comment)
{
    try {
        session->endRecordingSession(deviceTextOf(comment));
        return true;
    } catch (const CORBA::OBJECT_NOT_EXIST &) {
        return false;
    }
}

} // namespace installation
