#pragma once

#include "apps/korvectl/centralservice.h"

#include "orbconnection/vtconnectionobserver.h"

#include <QVector>

#include <functional>
#include <memory>
#include <optional>

namespace korvectl
{

/// A channel as the manager's value tree shows it.
struct ChannelState {
    QString id;
    QString name{};
    QString device{}; ///< of what it does or did last
    QString record{};
    QString recordName{};
    QString replay{};    ///< "Replay Running" and the like
    QString recording{}; ///< "Record" and the like
    bool isEnabledForReplay = false;
    double beginUs = 0; ///< of the section that is replayed, since 1970
    double endUs = 0;
    double positionUs = 0;
    QString error{}; ///< the last one, as the tree has it; empty: none

    /// 0 for none.
    unsigned long errorNumber() const;
    QString errorText() const;

    bool isReplaying() const;
    bool isRecording() const;
    bool isIdle() const { return !isReplaying() && !isRecording(); }
    /// From 0 to 1; nothing while nothing is replayed.
    std::optional<double> progress() const;
};

/// By the ids: 9 before 10, as managers count.
bool isBefore(const ChannelState &left, const ChannelState &right);

QString channelsTable(const QVector<ChannelState> &channels);
/// An array of objects.
QString channelsJson(const QVector<ChannelState> &channels);

/// The channels of a manager, mirrored for as long as this lives.
///
/// Thread: main; runs the event loop while it waits.  Errors: throws Failure.
class ChannelStates
{
public:
    using Condition = std::function<bool(const ChannelState &)>;

    /// Waits, bounded, until they are there.
    ChannelStates(const CentralService &service, const QString &subsystem, std::chrono::milliseconds timeout);

    QVector<ChannelState> channels() const;
    /// The first for which @p holds; waits for one, at most for the time-out.
    std::optional<ChannelState> waitFor(const Condition &holds) const;
    /// Waits until @p holds, at most for the time-out. It is asked also where there is no channel.
    void waitUntil(const std::function<bool()> &holds) const;

private:
    const std::chrono::milliseconds timeout;
    std::unique_ptr<VtConnectionObserver> mirror;
};

} // namespace korvectl
