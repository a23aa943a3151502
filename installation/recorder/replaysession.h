#pragma once

#include "installation/recorder/replaysender.h"
#include "installation/recorder/sessions.hh"

namespace installation::recorder
{

/// One replay as others see it: what is played, and the link over which it goes. docs/recorder.md tells how.
///
/// Thread: the ORB's; waits for a connection to be made, 2 s at most.  Errors: `exKorve` and `exLLDC` by the cause.
class ReplaySession : public POA_KORVE_INSTALLATION::IF_ReplayLink
{
public:
    struct Description {
        TQ_KORVE::struRECORD_DETAILS details;
        TQ_KORVE::eDATARATE_CLASS rate;
        quint32 ownHost = 0;       ///< IPv4, where it listens
        quint32 publishedHost = 0; ///< where others find that
        std::function<void()> end; ///< ends the session
    };

    ReplaySession(std::shared_ptr<ReplaySender> sender, Description description)
        : sender(std::move(sender)), description(std::move(description))
    {
    }

    void setReplayBegin(CORBA::ULongLong position) override;
    void setReplayEnd(CORBA::ULongLong position) override;
    CORBA::ULong setNoOfReplays(CORBA::ULong count) override;
    CORBA::ULongLong getCurrentFilePosition() override;
    void setCurrentFilePosition(CORBA::ULongLong position) override;
    void endReplaySession() override;
    void setConvertHostToNetByteOrder(CORBA::Boolean wanted) override;
    TQ_KORVE::struRECORD_DETAILS getReplayInformation() override;
    TQ_KORVE::eDATARATE_CLASS getDatarateClass() override;

    void endConnection(CORBA::ULong connectionId) override;
    LLDCmodule::seqIfDescription *getIfUsed() override;
    LLDCmodule::seqIfDescription *getIfAvailable() override;
    LLDCmodule::struConnectionParams waitForConnectionOnIf(const LLDCmodule::struConnectionParams &params,
                                                           CORBA::ULong samplesPerSecond) override;
    void startDataTransfer(CORBA::ULong connectionId) override;
    void stopDataTransfer(CORBA::ULong connectionId) override;

private:
    const std::shared_ptr<ReplaySender> sender;
    const Description description;
};

} // namespace installation::recorder
