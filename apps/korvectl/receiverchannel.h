#pragma once

#include "apps/korvectl/channelcalls.h"
#include "apps/korvectl/channelstates.h"

namespace korvectl
{

/// A channel for replays to one receiver, which a replay is started on by name, so that it can go nowhere else.
///
/// The manager knows a channel that is left of an earlier replay to the receiver again, by its name.
/// Thread: main; blocks, and runs the event loop while it waits.  Errors: answered; nothing is asked twice.
class ReceiverChannel
{
public:
    /// Borrows @p states. Shares @p handler, which is connected.
    ReceiverChannel(const std::shared_ptr<KorveGUI::KorveGuiToServerCorbaHandler> &handler, const ChannelStates &states)
        : calls(handler), states(states)
    {
    }

    /// When the manager has no room for it, the channels that earlier replays have left go first; finding out which
    /// these are takes the time-out.
    Answer add(const ChannelWish &wish);
    /// @p rate is in samples per second; 0: that of the record.
    Answer setSampleRate(quint64 rate, quint64 sampleBytes) { return calls.setSampleRate(rate, sampleBytes); }
    /// Waits until the manager tells whether the replay runs, is over already, or why it has not begun.
    Answer start(const ReplayPart &part);
    /// A channel that is busy stays.
    void remove() { calls.remove(); }
    const QString &id() const { return calls.id(); }

private:
    bool removeLeftOvers() const;
    Answer resultOfStart(const ReplayPart &part, const QString &errorBefore);

    ChannelCalls calls;
    const ChannelStates &states;
};

/// Keeps the manager from giving a replay that names no receiver to channels that earlier replays have left.
void closeLeftOvers(const std::shared_ptr<KorveGUI::KorveGuiToServerCorbaHandler> &handler,
                    const ChannelStates &states);

} // namespace korvectl
