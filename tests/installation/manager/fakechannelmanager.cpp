#include "tests/installation/manager/fakechannelmanager.h"

void FakeChannelManager::answer(const std::string &operation, bool value)
{
    answers[operation] = value;
}

bool FakeChannelManager::agrees(const std::string &operation)
{
    trouble.meet(operation);
    const auto found = answers.find(operation);
    return found == answers.end() || found->second;
}

CORBA::Boolean FakeChannelManager::isAvailableForRecord(const char *, const TQ_KRV::seqString &)
{
    return agrees("isAvailableForRecord");
}

CORBA::Boolean FakeChannelManager::connectForRecord(const char *, TQ_KRV::seqNetIf_out interfaces,
                                                    TQ_KRV::seqULong_out ids)
{
    interfaces = new TQ_KRV::seqNetIf(sources);
    ids = new TQ_KRV::seqULong(sourceIds);
    const bool hasSource = sources.length() > 0 || sourceIds.length() > 0;
    return agrees("connectForRecord") && (hasSource || answers.contains("connectForRecord"));
}

CORBA::Boolean FakeChannelManager::connectForRecordNG(const char *, TQ_KRV::seqNetIfNG_out interfaces,
                                                      TQ_KRV::seqULong_out ids)
{
    interfaces = new TQ_KRV::seqNetIfNG;
    ids = new TQ_KRV::seqULong;
    return agrees("connectForRecordNG");
}

void FakeChannelManager::startDataFlow(const char *)
{
    trouble.meet("startDataFlow");
}

void FakeChannelManager::startDataFlowNG(const char *, const char *, CORBA::ULong port)
{
    trouble.meet("startDataFlowNG");
    startedPort = port;
}

void FakeChannelManager::stopDataFlow(const char *)
{
    trouble.meet("stopDataFlow");
}

void FakeChannelManager::disconnect(const char *)
{
    trouble.meet("disconnect");
}

CORBA::Boolean FakeChannelManager::isAvailableForReplay(const char *, const TQ_KRV::seqString &)
{
    return agrees("isAvailableForReplay");
}

CORBA::Boolean FakeChannelManager::connectForReplay(const char *, const TQ_KRV::seqNetIf &interfaces,
                                                    const TQ_KRV::seqULong &)
{
    connectedTo.clear();
    for (CORBA::ULong position = 0; position < interfaces.length(); ++position)
        connectedTo.push_back(interfaces[position]);
    return agrees("connectForReplay");
}

void FakeChannelManager::DataTransferStarted(const char *)
{
    trouble.meet("DataTransferStarted");
}

void FakeChannelManager::stoppingDataTransfer(const char *)
{
    trouble.meet("stoppingDataTransfer");
}

void FakeChannelManager::goingDown()
{
    trouble.meet("goingDown");
}

void FakeChannelManager::ChannelRemoved(const char *)
{
    trouble.meet("ChannelRemoved");
}

void FakeChannelManager::RecordingFinished(const char *, const char *, const char *recordId)
{
    finishedRecord = recordId;
    trouble.meet("RecordingFinished");
}

CORBA::Boolean FakeChannelManager::startXgReplayLegacy(const TQ_KRV::seqNetIfNG &, const TQ_KRV::seqULong &)
{
    return agrees("startXgReplayLegacy");
}

CORBA::Boolean FakeChannelManager::startXgReplay(const char *, CORBA::ULongLong, CORBA::ULongLong, CORBA::ULong)
{
    return agrees("startXgReplay");
}

CORBA::Boolean FakeChannelManager::stopXgReplay()
{
    return agrees("stopXgReplay");
}

void FakeChannelManager::KorveRecordReplaySessionFault(const char *, CORBA::ULong, const char *)
{
    trouble.meet("KorveRecordReplaySessionFault");
}
