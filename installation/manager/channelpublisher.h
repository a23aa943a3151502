#pragma once

#include "installation/manager/channeldirectory.h"

#include <functional>
#include <map>
#include <memory>

namespace installation
{

/// Shows the channels in the value tree of the process, one node "/KORVE/Channel/ID" each, with the names and classes
/// that a client's channel values have; and the last error of all in "/KORVE/Command/ErrorCode".
///
/// "StartPosition" and "StopPosition" are the section in bytes of the record; "ReplayBegin", "ReplayEnd" and
/// "CurrentReplayPosition" are the times of its first and last sample and of the one that is replayed, in microseconds
/// since 1970, between which positions count evenly. Device and record stay as they were when a run has ended.
/// Thread: main, but for what listener() gives.
class ChannelPublisher
{
public:
    ChannelPublisher();
    /// Takes the nodes away.
    ~ChannelPublisher();
    ChannelPublisher(const ChannelPublisher &) = delete;

    /// Shows exactly these channels.
    void publish(const ChannelList &channels, const CommandError &last);

    /// Has a list published on the main thread. Thread: any; may outlive the publisher.
    ChannelDirectory::Listener listener();

private:
    class Values;

    void removeOthers(const ChannelList &channels);

    std::map<QString, std::unique_ptr<Values>> shown;
    quint64 lastError = 0;
    const std::shared_ptr<ChannelPublisher *> alive; ///< holds this, until this has gone
};

} // namespace installation
