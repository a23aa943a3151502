#pragma once

#include "tests/installation/recorder/sessionfixture.h"

/// A replay of the recorder's record, and the peer that takes the samples.
class ReplayTest : public SessionTest
{
protected:
    /// A replay of the record with @p bytes, whose link is still to be made.
    void open(const QByteArray &bytes, const QJsonObject &global = {{"core:sample_rate", 1e6}})
    {
        start(bytes, global);
        openAgain();
    }
    void openAgain()
    {
        session = control->getReplaySessionById(air, TQ_KORVE_IT::IF_Korve_IT::_nil());
        link = LLDCmodule::LLDC_Interface_Transmitter::_narrow(session);
    }
    /// Connects the recorder to the peer and returns the number of the link.
    CORBA::ULong connect(CORBA::ULong samplesPerSecond)
    {
        const auto answer = link->waitForConnectionOnIf(tcp(peer), samplesPerSecond);
        peer.accept();
        return static_cast<CORBA::ULong>(answer.parameter);
    }

    SamplePeer peer{SamplePeer::Transport::Tcp, lease.address()};
    TQ_KORVE::IF_ReplaySession_var session;
    LLDCmodule::LLDC_Interface_Transmitter_var link;
};
