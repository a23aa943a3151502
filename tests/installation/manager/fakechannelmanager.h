#pragma once

#include "tests/installation/manager/trouble.h"

#include "idl/korvemanager.hh"

#include <atomic>

/// A program behind a channel: agrees to everything, unless it is told otherwise, and connects nothing.
class FakeChannelManager : public POA_TQ_KRV::IF_KRV_c_ChanMan
{
public:
    Trouble trouble;
    /// What the operation of that name answers; true unless set.
    void answer(const std::string &operation, bool value);
    /// The source that connectForRecord() names; it answers false without one, unless it is told what to answer.
    TQ_KRV::seqNetIf sources;
    TQ_KRV::seqULong sourceIds;
    /// What came with the last call.
    std::vector<TQ_KRV::struNetIf> connectedTo;
    std::atomic<CORBA::ULong> startedPort = 0;
    std::string finishedRecord;

    CORBA::Boolean isAvailableForRecord(const char *, const TQ_KRV::seqString &) override;
    CORBA::Boolean connectForRecord(const char *, TQ_KRV::seqNetIf_out interfaces, TQ_KRV::seqULong_out ids) override;
    CORBA::Boolean connectForRecordNG(const char *, TQ_KRV::seqNetIfNG_out interfaces,
                                      TQ_KRV::seqULong_out ids) override;
    void startDataFlow(const char *) override;
    void startDataFlowNG(const char *, const char *, CORBA::ULong port) override;
    void stopDataFlow(const char *) override;
    void disconnect(const char *) override;
    CORBA::Boolean isAvailableForReplay(const char *, const TQ_KRV::seqString &) override;
    CORBA::Boolean connectForReplay(const char *, const TQ_KRV::seqNetIf &interfaces,
                                    const TQ_KRV::seqULong &) override;
    void DataTransferStarted(const char *) override;
    void stoppingDataTransfer(const char *) override;
    void goingDown() override;
    void ChannelRemoved(const char *) override;
    void RecordingFinished(const char *, const char *, const char *recordId) override;
    CORBA::Boolean startXgReplayLegacy(const TQ_KRV::seqNetIfNG &, const TQ_KRV::seqULong &) override;
    CORBA::Boolean startXgReplay(const char *, CORBA::ULongLong, CORBA::ULongLong, CORBA::ULong) override;
    CORBA::Boolean stopXgReplay() override;
    void KorveRecordReplaySessionFault(const char *, CORBA::ULong, const char *) override;

private:
    bool agrees(const std::string &operation);

    std::map<std::string, bool> answers;
};
