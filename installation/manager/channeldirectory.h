#pragma once

#include "installation/manager/channelstore.h"

#include <functional>
#include <mutex>
#include <optional>

namespace installation
{

/// The channels of a manager: changed by the threads that serve calls and by those that watch runs, and kept on the
/// disk before a change is seen.
///
/// A state that somebody has entered here belongs to him until he leaves it: commands on a channel hold no lock while
/// they ask others.
/// Thread: any; a change waits for the disk, never for a remote call.  Errors: a channel that is new, goes or has other
/// settings stays as it was when that cannot be kept, and it throws CORBA::PERSIST_STORE; CORBA::BAD_PARAM when it would
/// be named like another one.
class ChannelDirectory
{
public:
    /// Hears of all channels and of the last error after each change, in order; must neither block nor call back.
    using Listener = std::function<void(const ChannelList &, const CommandError &)>;

    static constexpr std::size_t maximumChannels = 64;

    /// @throws std::runtime_error when the folder cannot be used.
    ChannelDirectory(const QString &folder, Listener listener);

    ChannelList list() const;
    std::optional<Channel> find(const QString &id) const;

    struct Entry {
        enum class State { Added, Renewed, Taken, Full };
        State state;
        Channel channel{}; ///< Full: none
    };
    /// The channel that is named like @p settings says, with these settings from now on if @p mayRenew holds for it;
    /// when there is none, a new one. Of those who ask for the same at a time, one gets the new channel, and the others
    /// find it. @p mayRenew must neither block nor call back.
    Entry enter(const ChannelSettings &settings, const std::function<bool(const Channel &)> &mayRenew);
    /// False when @p mayGo does not hold, or there is no such channel.
    bool remove(const QString &id, const std::function<bool(const Channel &)> &mayGo);
    /// The channel as @p edit has left it; without result when it answered false or there is no such channel. What a
    /// channel is doing counts without the disk, too.
    std::optional<Channel> change(const QString &id, const std::function<bool(Channel &)> &edit);
    /// As above, for the channel of all of them that @p choose points to; null: none.
    std::optional<Channel> changeOne(const std::function<Channel *(ChannelList &)> &choose);
    /// Notes that a command has failed, for the channel @p id if there is such a one.
    void noteError(const QString &id, quint32 code, const QString &text);

private:
    template <typename Work> static auto kept(Work work);
    Channel add(ChannelList all, const ChannelSettings &settings);
    void keep(const Channel &before, const Channel &after) const;
    void show(ChannelList newChannels);

    const ChannelStore store;
    const Listener listener;
    std::mutex changing;      // one change at a time, with its way to the disk
    mutable std::mutex mutex; // guards `channels`; never held during anything that takes time
    ChannelList channels;
    CommandError lastError; // guarded by `changing`
};

} // namespace installation
