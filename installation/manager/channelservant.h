#pragma once

#include "installation/manager/channelcore.h"

#include "idl/korvemanager.hh"

namespace installation
{

/// One channel for the program that has registered it.
///
/// Settings count from the next run on. `exChan` says why something cannot be done now; the number behind it stands in
/// the value tree, see docs/channels.md. Operations that raise nothing show there what went wrong.
/// Thread: any; recording and replay wait for recorder and channel manager, each call limited.
class ChannelServant : public POA_TQ_KRV::IF_KRV_c_Chan
{
public:
    /// Tells that the channel of that id is to go, with force or only when it does nothing.
    using Removal = std::function<void(const QString &id, bool forced)>;

    ChannelServant(QString id, std::shared_ptr<ChannelCore> core, Removal remove);

    void errorOccured(TQ_KRV::eCHANNEL_FAULT fault) override; // contract: spelled so on the wire
    void removeChannel() override;
    void removeChannelForced() override;
    void setCallBackInterface(TQ_KRV::IF_KRV_c_ChanMan_ptr callback) override;
    void setDataRateClass(TQ_KRV::eDATARATE_CLASS rate) override;
    void setRequestedSampleRate(CORBA::ULongLong sampleRate, CORBA::UShort sampleBytes) override;
    void setPELINRegistration(CORBA::Boolean registers, CORBA::Boolean forces) override;
    void setDataFormat(TQ_KRV::eDATA_FORMAT format) override;
    void setRecordFlag(CORBA::Boolean record) override;
    void setReplayFlag(CORBA::Boolean replay) override;
    void setName(const char *name) override;
    char *getChannelID() override;
    /// The loop in MiB, 0 for none; the duration in seconds, 0 until it is stopped.
    void startRecording(CORBA::ULong loopMib, const CORBA::WChar *name, CORBA::ULong durationS) override;
    void DataTransferStarted() override;
    void stopRecording(const CORBA::WChar *comment) override;
    /// The source or the receiver has no more to do with it: the run ends.
    void DataTransferStopped() override;
    void DataTransferStopping() override;
    void startReplaying(const char *deviceId, const char *recordId, TQ_KRV::eDATARATE_CLASS rate,
                        CORBA::ULongLong startPosition, CORBA::ULongLong stopPosition, CORBA::ULong count) override;
    void channelError(const char *text) override;
    void setKorveDevices(const TQ_KRV::seqStringList &devices) override;
    /// The class that the channel has now stays one of its two when another one is set.
    void setAdditionalDataRateClass() override;

private:
    using Edit = std::function<void(ChannelSettings &)>;

    void change(const Edit &edit);
    void changeWhile(const std::function<void(const Channel &)> &check, const Edit &edit);
    Channel channel() const;

    const QString id;
    const std::shared_ptr<ChannelCore> core;
    const Removal remove;
};

} // namespace installation
