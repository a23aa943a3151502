#include "installation/recorder/replaysession.h"

#include "installation/recorder/linkparameters.h"
#include "installation/recorder/sessionfailure.h"

namespace installation::recorder
{

void ReplaySession::setReplayBegin(CORBA::ULongLong position)
{
    answerDevice("setReplayBegin", [&] { sender->change([=](ReplaySection &place) { place.setBegin(position); }); });
}

void ReplaySession::setReplayEnd(CORBA::ULongLong position)
{
    answerDevice("setReplayEnd", [&] { sender->change([=](ReplaySection &place) { place.setEnd(position); }); });
}

CORBA::ULong ReplaySession::setNoOfReplays(CORBA::ULong count)
{
    sender->change([=](ReplaySection &place) { place.setPasses(count); });
    return count;
}

CORBA::ULongLong ReplaySession::getCurrentFilePosition()
{
    return sender->section().samplePosition();
}

void ReplaySession::setCurrentFilePosition(CORBA::ULongLong position)
{
    answerDevice("setCurrentFilePosition",
                 [&] { sender->change([=](ReplaySection &place) { place.setPosition(position); }); });
}

void ReplaySession::endReplaySession()
{
    description.end();
}

void ReplaySession::setConvertHostToNetByteOrder(CORBA::Boolean wanted)
{
    sender->swapBytes(wanted);
}

TQ_KORVE::struRECORD_DETAILS ReplaySession::getReplayInformation()
{
    const ReplaySection section = sender->section();
    TQ_KORVE::struRECORD_DETAILS details = description.details;
    details.startPosition = section.begin();
    details.stopPosition = section.end();
    return details;
}

TQ_KORVE::eDATARATE_CLASS ReplaySession::getDatarateClass()
{
    return description.rate;
}

void ReplaySession::endConnection(CORBA::ULong connectionId)
{
    answerLink("endConnection", [&] { sender->disconnect(connectionId); });
}

LLDCmodule::seqIfDescription *ReplaySession::getIfUsed()
{
    return interfaceUsed(sender->linkInUse());
}

LLDCmodule::seqIfDescription *ReplaySession::getIfAvailable()
{
    return interfacesAvailable(description.publishedHost);
}

LLDCmodule::struConnectionParams
ReplaySession::waitForConnectionOnIf(const LLDCmodule::struConnectionParams &params, CORBA::ULong samplesPerSecond)
{
    return answerLink("waitForConnectionOnIf", [&] {
        SampleLink::Address address = toAddress(params);
        const bool connects = address.host != 0;
        if (!connects)
            address.host = description.ownHost;
        auto link = connects ? sender->connectTo(address, samplesPerSecond) : sender->listenOn(address, samplesPerSecond);
        if (!connects)
            link.address.host = description.publishedHost;
        return toParameters(link.address, link.id);
    });
}

void ReplaySession::startDataTransfer(CORBA::ULong connectionId)
{
    answerLink("startDataTransfer", [&] { sender->start(connectionId); });
}

void ReplaySession::stopDataTransfer(CORBA::ULong connectionId)
{
    answerLink("stopDataTransfer", [&] { sender->pause(connectionId); });
}

} // namespace installation::recorder
