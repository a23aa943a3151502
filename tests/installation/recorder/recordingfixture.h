#pragma once

#include "tests/installation/recorder/sessionfixture.h"
#include "tests/installation/recorder/widetext.h"

/// A recorder without records, and a recording of it.
class RecordingTest : public SessionTest
{
protected:
    RecordingTest() { serve({}); }

    void open(TQ_KORVE::eDATARATE_CLASS rate = TQ_KORVE::drVUHF_1M, CORBA::ULong loopMebibytes = 0,
              TQ_KORVE::eDATA_FORMAT format = TQ_KORVE::dfRAW)
    {
        session = control->createRecordingSession(rate, loopMebibytes, format, TQ_KORVE_IT::IF_Korve_IT::_nil());
        link = LLDCmodule::LLDC_Interface_Receiver::_narrow(session);
        id = session->getId();
    }
    /// Somebody who has connected to the recording and may send.
    SamplePeer sender()
    {
        return {SamplePeer::Transport::Tcp, 0x7f000001, static_cast<std::uint16_t>(session->setupNetworkServer(0))};
    }
    /// Sends all of it and ends the stream; returns when the record is complete.
    void recordAll(const QByteArray &bytes)
    {
        NotifiedReceiver &told = announced();
        SamplePeer peer = sender();
        peer.send(bytes);
        peer.finish();
        told.upTo(true, TQ_KORVE::rsIDLE);
    }
    QByteArray stored() const
    {
        return readFile(directory.filePath("state/recordings/" + QString(id.in()) + ".sigmf-data"));
    }
    TQ_KORVE::struMETA_DATA metaData() { return TQ_KORVE::struMETA_DATA_var(control->getMetaData(id)).in(); }
    QStringList history()
    {
        TQ_KORVE::seqHistory_var entries = control->getHistory(id);
        QStringList texts;
        for (CORBA::ULong i = 0; i < entries->length(); ++i)
            texts.append(narrow(entries[i].historyEntry));
        return texts;
    }

    TQ_KORVE::IF_RecordingSession_var session;
    LLDCmodule::LLDC_Interface_Receiver_var link;
    CORBA::String_var id;
};
