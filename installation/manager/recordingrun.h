#pragma once

#include "installation/manager/recordingwatch.h"

namespace installation
{

/// What is to be recorded.
struct RecordingOrder {
    quint32 loopMib = 0;   ///< 0: no loop
    QString name;          ///< of the new record
    quint32 durationS = 0; ///< 0: until it is stopped
};

/// Records on channels: the recorder connects to the source of the channel, or listens for it.
///
/// The device is the first that the channel may use, in its order, and that has room for a session; of any, the one
/// with the most free space comes first.
/// Thread: any; a command waits for the recorder and the channel manager, each call limited.
/// Errors: ChannelFailure with the numbers of docs/channels.md.
class RecordingRun
{
public:
    RecordingRun(const RunContext &context, RunWatch &runs, LeftRecordings &left)
        : context(context), watch(context, runs, left), end(context, left)
    {
    }

    void start(const QString &channelId, const RecordingOrder &order);
    /// With @p forced, also when the recorder cannot be told.
    void stopChannel(const Channel &seen, const QString &comment, bool forced);
    /// Finds out what has become of a run that an earlier manager has begun, and looks after it again.
    void resume(const Channel &channel) { watch.resume(channel); }

private:
    using State = ChannelRun::State;

    std::vector<Device> candidates(const ChannelSettings &settings, const RecordingOrder &order) const;
    Channel take(const QString &channelId, const RecordingOrder &order) const;
    void askAvailability(const Channel &held, const std::vector<Device> &devices) const;
    Channel createSession(const Channel &held, const std::vector<Device> &devices, quint32 loopMib) const;
    Channel createSessionOn(const Channel &held, const Device &device, quint32 loopMib) const;
    Channel noteRecord(const Channel &held) const;
    void connect(const Channel &held) const;
    bool connectToSourceOfManager(const Channel &held) const;
    void listenFor(const Channel &held, bool datagrams, quint16 port) const;
    void connectTo(const Channel &held, const TQ_KRV::struNetIf &source) const;
    void nameRecord(const Channel &held) const;

    const RunContext &context;
    RecordingWatch watch;
    const RecordingEnd end;
};

} // namespace installation
