#pragma once

#include "installation/manager/replaywatch.h"

#include "idl/korve.hh"

namespace installation
{

/// What is to be replayed.
struct ReplayOrder {
    QString deviceId;
    QString recordId;
    TQ_KRV::eDATARATE_CLASS rate = TQ_KRV::drHF_20k;
    quint64 begin = 0; ///< in bytes of the record
    quint64 end = 0;
    quint32 count = 1; ///< 0: for ever
};

/// Replays records on channels: the recorder sends, to the address of the channel or to its channel manager, and the
/// manager looks several times a second where it is and whether it has come to the end.
///
/// Each command is one step from state to state (ChannelRun::State) and fails for a run that is in none of its states.
/// Thread: any; a command waits for the recorder and the channel manager, each call limited.
/// Errors: ChannelFailure with the numbers of docs/channels.md.
class ReplayRun
{
public:
    ReplayRun(const RunContext &context, RunWatch &runs) : context(context), watch(context, runs), end(context) {}

    /// On the first channel that can: enabled, allowed for the device, idle, and of @p type if that is given.
    void start(const ReplayOrder &order, std::optional<TQ_KRV::interfaceTypeEnum> type);
    void startOn(const QString &channelId, const ReplayOrder &order);
    void pause(const QString &deviceId, const QString &recordId);
    void goOn(const QString &deviceId, const QString &recordId);
    void stop(const QString &deviceId, const QString &recordId);
    /// Stops what the channel replays. With @p forced, also when the recorder cannot be told.
    void stopChannel(const Channel &seen, bool forced);
    /// Finds out what has become of a run that an earlier manager has begun, and looks after it again.
    void resume(const Channel &channel) { watch.resume(channel); }

private:
    using State = ChannelRun::State;
    using Choice = std::function<Channel *(ChannelList &)>;

    void startOnOne(const ReplayOrder &order, QString concerned, const Choice &choose);
    Channel connect(Channel held, const ReplayOrder &order, TQ_KORVE::IF_Control_ptr recorder) const;
    Channel connectXg(const Channel &held) const;
    void open(Channel &held, const ReplayOrder &order, TQ_KORVE::IF_Control_ptr recorder) const;
    void begin(const Channel &held, const ReplayOrder &order, TQ_KORVE::IF_Control_ptr recorder);
    void stopForeign(const QString &deviceId, const QString &recordId) const;
    template <typename Work> void noting(const QString &concerned, Work work) const;
    template <typename Work> void orBackTo(State before, const Channel &held, Work work) const;
    std::optional<Channel> replaying(const QString &deviceId, const QString &recordId) const;

    const RunContext &context;
    ReplayWatch watch;
    const ReplayEnd end;
};

} // namespace installation
