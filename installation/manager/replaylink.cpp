#include "installation/manager/replaylink.h"

#include "installation/manager/channelmanager.h"
#include "installation/cco/orbaccess.h"
#include "installation/manager/receiveraddress.h"

#include <algorithm>
#include <limits>

namespace installation
{

ReplayLink ReplayLink::open(TQ_KORVE::IF_Control_ptr recorder, const ChannelRun &run,
                            std::optional<TQ_KORVE::eDATARATE_CLASS> rate, std::chrono::milliseconds limit)
{
    const QByteArray record = run.recordId.toUtf8();
    const auto nobody = TQ_KORVE_IT::IF_Korve_IT::_nil();
    const TQ_KORVE::IF_ReplaySession_var session =
        rate ? recorder->getReplaySessionByIdEx(record.constData(), nobody, *rate)
             : recorder->getReplaySessionById(record.constData(), nobody);
    ReplayLink link(session.in(), 0, limit);
    link.setSection(run);
    return link;
}

ReplayLink::ReplayLink(const ChannelRun &run, std::chrono::milliseconds limit)
    : ReplayLink(CORBA::Object_var(referenceFrom(run.session)), run.connection, limit)
{
}

ReplayLink::ReplayLink(CORBA::Object_ptr object, quint32 connection, std::chrono::milliseconds limit) : id(connection)
{
    if (CORBA::is_nil(object))
        throw CORBA::OBJECT_NOT_EXIST(0, CORBA::COMPLETED_NO);
    session = withCallLimit<TQ_KORVE::IF_ReplaySession>(object, limit);
    transmitter = withCallLimit<LLDCmodule::LLDC_Interface_Transmitter>(object, limit);
}

void ReplayLink::setSection(const ChannelRun &run)
{
    try {
        session->setReplayBegin(run.begin);
        session->setReplayEnd(run.end);
        session->setNoOfReplays(run.count);
    } catch (const CORBA::Exception &) { // nobody else knows of this session
        session->endReplaySession();
        throw;
    }
}

LLDCmodule::struConnectionParams ReplayLink::connect(const ChannelSettings &settings)
{
    LLDCmodule::struConnectionParams wanted{linkKindOf(settings.interfaceType), 0, 0, 0};
    if (const auto receiver = ReceiverAddress::from(settings.receiverAddress)) {
        wanted.address = receiver->address;
        wanted.port = receiver->port;
    }
    const LLDCmodule::struConnectionParams made = transmitter->waitForConnectionOnIf(wanted, linkRateOf(settings));
    id = static_cast<quint32>(made.parameter);
    return made;
}

void ReplayLink::start()
{
    transmitter->startDataTransfer(id);
}

void ReplayLink::pause()
{
    transmitter->stopDataTransfer(id);
}

quint64 ReplayLink::position() const
{
    return session->getCurrentFilePosition();
}

void ReplayLink::close()
{
    try {
        const bool hadLink = id != 0;
        if (hadLink)
            endConnection();
        id = 0;
        endSession(hadLink);
    } catch (const CORBA::OBJECT_NOT_EXIST &) { // the recorder has ended it first
    }
}

void ReplayLink::endSession(bool isLinkDropped)
{
    try {
        session->endReplaySession();
    } catch (const CORBA::SystemException &error) {
        if (CORBA::OBJECT_NOT_EXIST::_downcast(&error) || !isLinkDropped)
            throw;
        throw CORBA::COMM_FAILURE(0, CORBA::COMPLETED_MAYBE); // half of it has been done
    }
}

void ReplayLink::endConnection()
{
    try {
        transmitter->endConnection(id);
    } catch (const LLDCmodule::exLLDC &refusal) {
        if (refusal.kind != LLDCmodule::ekDisconnectFailed)
            return; // the link has gone
        session->endReplaySession();
        throw;
    }
}

QString ReplayLink::reference() const
{
    return textOfReference(session);
}

LLDCmodule::eINTERFACE_KIND linkKindOf(TQ_KRV::interfaceTypeEnum type)
{
    switch (type) {
    case TQ_KRV::TCP_IF:
        return LLDCmodule::ifTCP;
    case TQ_KRV::UDP_IF:
        return LLDCmodule::ifUDP;
    case TQ_KRV::FPDP_SERIAL_IF:
        return LLDCmodule::ifFPDP_SERIAL;
    case TQ_KRV::TQXG_IF:
        return LLDCmodule::ifTQXG;
    case TQ_KRV::SIGIQ_IF:
        return LLDCmodule::ifSIGIQ;
    }
    return LLDCmodule::ifTCP; // only from a caller within the process
}

CORBA::ULong linkRateOf(const ChannelSettings &settings)
{
    constexpr quint64 last = std::numeric_limits<CORBA::ULong>::max();
    return static_cast<CORBA::ULong>(std::min(settings.sampleRate, last));
}

} // namespace installation
