#pragma once

#include "installation/manager/channel.h"

#include "idl/korve.hh"

#include <chrono>

namespace installation
{

/// A recording at the recorder: its session, and the link by which its samples arrive.
///
/// It is known by what ChannelRun keeps of it.
/// Thread: any, one at a time; each call is limited.  Errors: what the recorder raises.
class RecordingLink
{
public:
    /// Makes a session. @p loopMib is the size of a loop, 0 for none.
    static RecordingLink create(TQ_KORVE::IF_Control_ptr recorder, const ChannelSettings &settings, quint32 loopMib,
                                std::chrono::milliseconds limit);
    /// The one that @p run has noted.
    RecordingLink(const ChannelRun &run, std::chrono::milliseconds limit);

    QString recordId() const;
    QString reference() const;
    /// Connects to a source; the number of the link, 0 when there is none.
    quint32 connectTo(const TQ_KRV::struNetIf &source, quint32 sampleRate);
    /// Listens for a source, on @p port or any; the port.
    quint32 listen(quint32 sampleRate, bool datagrams, quint16 port);
    /// False when the recorder has ended the session first, and has not kept the comment.
    bool end(const QString &comment);

private:
    RecordingLink(CORBA::Object_ptr object, std::chrono::milliseconds limit);

    TQ_KORVE::IF_RecordingSession_var session;
    LLDCmodule::LLDC_Interface_Receiver_var receiver; // the same object
};

} // namespace installation
