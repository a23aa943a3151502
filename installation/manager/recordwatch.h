#pragma once

#include "installation/calls/servedobjects.h"
#include "installation/manager/recordstates.h"

#include "idl/korve.hh"

#include <map>
#include <memory>
#include <mutex>

namespace installation
{

/// Follows what the records of each recorder are doing: has itself told by the recorder, and reads the whole list now
/// and then for what it was not told, such as before a restart of either.
///
/// Thread: any, one at a time for each recorder; follow() blocks for it.
class RecordWatch
{
public:
    /// Each recorder gets a receiver for its notifications of its own, served among @p objects, since these do not
    /// say whose they are.
    RecordWatch(ServedObjects objects, std::shared_ptr<RecordStates> states);

    /// Has the recorder tell of changes from now on, takes its list, and returns how many records there are. To be
    /// repeated, since a recorder forgets with each restart whom it has to tell.
    /// @throws CORBA::Exception when there is no list.
    int follow(const QString &device, TQ_KORVE::IF_Control_ptr recorder);

private:
    void announce(const QString &device, TQ_KORVE::IF_Control_ptr recorder);
    const Activation &receiverFor(const QString &device);

    const ServedObjects objects;
    const std::shared_ptr<RecordStates> states;
    std::unique_ptr<std::mutex> mutex = std::make_unique<std::mutex>(); // guards `receivers`; not held during calls
    std::map<QString, std::shared_ptr<Activation>> receivers;
};

} // namespace installation
