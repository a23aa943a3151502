#pragma once

#include "installation/manager/channel.h"

#include "idl/korve.hh"

#include <chrono>
#include <optional>

namespace installation
{

/// A replay at the recorder: the session of a record, and the link by which its samples leave.
///
/// It is known by what ChannelRun keeps of it, so that a manager that has started again has it, too.
/// Thread: any, one at a time; each call is limited.  Errors: what the recorder raises.
class ReplayLink
{
public:
    /// Gets the session of `run.recordId` and sets the section and the count of @p run.
    static ReplayLink open(TQ_KORVE::IF_Control_ptr recorder, const ChannelRun &run,
                           std::optional<TQ_KORVE::eDATARATE_CLASS> rate, std::chrono::milliseconds limit);
    /// The one that @p run has noted.
    ReplayLink(const ChannelRun &run, std::chrono::milliseconds limit);

    /// Makes the link: to the receiver's address, or listening for a channel without one. Returns where it is.
    LLDCmodule::struConnectionParams connect(const ChannelSettings &settings);
    /// Starts the data, or goes on behind a pause.
    void start();
    void pause();
    quint64 position() const;
    /// Drops the link and ends the session. What is gone already is nothing to complain about. One that fails between
    /// the two may be tried again; it has no connection() any more, and raises what may be completed, since nothing is
    /// sent from then on.
    void close();

    QString reference() const;
    quint32 connection() const { return id; }

private:
    ReplayLink(CORBA::Object_ptr object, quint32 connection, std::chrono::milliseconds limit);
    void setSection(const ChannelRun &run);
    void endConnection();
    void endSession(bool isLinkDropped);

    TQ_KORVE::IF_ReplaySession_var session;
    LLDCmodule::LLDC_Interface_Transmitter_var transmitter; // the same object
    quint32 id = 0;
};

/// The kind of link that an interface type of a channel stands for.
LLDCmodule::eINTERFACE_KIND linkKindOf(TQ_KRV::interfaceTypeEnum type);
/// The samples per second, as a link takes them.
CORBA::ULong linkRateOf(const ChannelSettings &settings);

} // namespace installation
