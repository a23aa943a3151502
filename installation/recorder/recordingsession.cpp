#include "installation/recorder/recordingsession.h"

#include "installation/recorder/devicestructures.h"
#include "installation/recorder/linkparameters.h"
#include "installation/recorder/sessionfailure.h"

namespace installation::recorder
{

namespace
{

constexpr CORBA::ULong longestComment = 65535;
constexpr CORBA::ULong overTcp = 0;
constexpr CORBA::ULong overUdp = 1;

[[noreturn]] void refuseInterface(const char *operation, const QString &text)
{
    throw linkFailure(operation, {LLDCmodule::ekIllegalIf, text});
}

} // namespace

char *RecordingSession::getId()
{
    return CORBA::string_dup(description.recordId.toUtf8().constData());
}

void RecordingSession::endRecordingSession(const TQ_KORVE::wideText &comment)
{
    answerDevice("endRecordingSession", [&] {
        if (comment.length() > longestComment)
            throw RecorderError(TQ_KORVE::ekINVALID_VALUE,
                                QStringLiteral("a comment of %1 characters is too long").arg(comment.length()));
        receiver->end(fromWideText(comment), endLimit);
    });
}

void RecordingSession::setConvertNetToHostByteOrder(CORBA::Boolean wanted)
{
    receiver->swapBytes(wanted);
}

CORBA::UShort RecordingSession::getNetworkSourcePort()
{
    const auto used = receiver->linkInUse();
    return used ? used->port : 0;
}

CORBA::ULong RecordingSession::setupNetworkServer(CORBA::ULong port)
{
    return answerLink("setupNetworkServer", [&] { return listen(LLDCmodule::ifTCP, port, 0); });
}

CORBA::ULong RecordingSession::setupNetworkServerEx(CORBA::ULong sampleRateHz, CORBA::ULong transport, CORBA::UShort port)
{
    if (transport != overTcp && transport != overUdp)
        refuseInterface("setupNetworkServerEx", QStringLiteral("this recorder has TCP (0) and UDP (1) only"));
    return answerLink("setupNetworkServerEx", [&] {
        return listen(transport == overUdp ? LLDCmodule::ifUDP : LLDCmodule::ifTCP, port, sampleRateHz);
    });
}

CORBA::ULong RecordingSession::listen(LLDCmodule::eINTERFACE_KIND kind, CORBA::ULong port, quint64 sampleRateHz)
{
    SampleLink::Address own = toAddress({kind, 0, port, 0});
    own.host = description.ownHost;
    return receiver->listenOn(own, {0, checkedRate(sampleRateHz)});
}

char *RecordingSession::setupNetworkTqXg(const char *, CORBA::ULong, CORBA::ULong)
{
    refuseInterface("setupNetworkTqXg", QStringLiteral("this recorder has no such interface"));
}

char *RecordingSession::setupNetworkTqXgEx(const char *, CORBA::ULong, CORBA::ULong)
{
    refuseInterface("setupNetworkTqXgEx", QStringLiteral("this recorder has no such interface"));
}

/// The rate that is wanted, or that of the class.
quint64 RecordingSession::checkedRate(quint64 sampleRateHz) const
{
    if (description.classRateHz != 0 && sampleRateHz > description.classRateHz)
        throw LinkError(LLDCmodule::ekDataRateUnavailable,
                        QStringLiteral("%1 Hz are more than the %2 Hz of the data-rate class")
                            .arg(QString::number(sampleRateHz), QString::number(description.classRateHz)));
    return sampleRateHz == 0 ? description.classRateHz : sampleRateHz;
}

CORBA::ULong RecordingSession::connectToIf(const LLDCmodule::struConnectionParams &params, CORBA::ULong sampleRateHz)
{
    return answerLink("connectToIf", [&] {
        const SampleLink::Address address = toAddress(params);
        if (address.host == 0)
            throw LinkError(LLDCmodule::ekIllegalIf, QStringLiteral("a source needs an address"));
        return receiver->connectTo(address, {params.parameter, checkedRate(sampleRateHz)});
    });
}

void RecordingSession::endConnection(CORBA::ULong connectionId)
{
    answerLink("endConnection", [&] { receiver->disconnect(connectionId); });
}

LLDCmodule::seqIfDescription *RecordingSession::getIfUsed()
{
    return interfaceUsed(receiver->linkInUse());
}

LLDCmodule::seqIfDescription *RecordingSession::getIfAvailable()
{
    return interfacesAvailable(description.publishedHost);
}

} // namespace installation::recorder
