#pragma once

#include "idl/korvemanager.hh"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>
#include <vector>

namespace installation
{

/// What a channel is for, as it was registered and set since. Kept on the disk.
struct ChannelSettings {
    QString name;
    TQ_KRV::eDATARATE_CLASS rate = TQ_KRV::drHF_20k;
    std::optional<TQ_KRV::eDATARATE_CLASS> additionalRate{};
    TQ_KRV::eDATA_FORMAT format = TQ_KRV::dfRAW;
    bool record = false;                 ///< enabled for recording
    bool replay = false;                 ///< enabled for replay
    QVector<QStringList> deviceGroups{}; ///< the devices it may use, the ones to be taken first in front; empty: any
    TQ_KRV::interfaceTypeEnum interfaceType = TQ_KRV::TCP_IF;
    QString receiverAddress{}; ///< "HOST:PORT" of a channel that is a network endpoint by itself, else empty
    QString channelManager{};  ///< the reference of its channel manager as text; empty: none
    quint64 sampleRate = 0;    ///< samples per second of replays and recordings; 0: their own
    quint16 sampleBytes = 0;   ///< 0: unknown
    bool registersAtArchive = false;
    bool forcesRegistration = false;

    bool operator==(const ChannelSettings &) const = default;

    QStringList devices() const
    {
        QStringList all;
        for (const QStringList &group : deviceGroups)
            all += group;
        return all;
    }
    bool allows(const QString &deviceId) const { return deviceGroups.isEmpty() || devices().contains(deviceId); }
    /// There is never more than one channel of a name at an endpoint. Those without a name are all different.
    bool isNamedLike(const ChannelSettings &other) const
    {
        return !name.isEmpty() && name == other.name && interfaceType == other.interfaceType &&
               receiverAddress == other.receiverAddress;
    }
};

/// What a channel is doing. Kept on the disk, so that a manager that starts again finds it.
struct ChannelRun {
    enum class State {
        Idle,
        ReplayStarting,
        ReplayRunning,
        ReplayPausing,
        ReplayPaused,
        ReplayStopping,
        RecordStarting,
        Recording,
        RecordStopping
    };

    State state = State::Idle;
    quint64 number = 0; ///< tells one run from the next
    quint64 step = 0;   ///< tells a state from the same one, entered once more
    QString deviceId{};
    QString recordId{};
    QString recordName{};
    QString session{};      ///< the reference of the recorder's session as text; empty: none yet
    quint32 connection = 0; ///< the number of its link; 0: none yet
    quint64 begin = 0;      ///< in bytes of the record
    quint64 end = 0;
    quint32 count = 0;     ///< of replays; 0: for ever
    quint32 durationS = 0; ///< of a recording; 0: until it is stopped
    quint64 startedUs = 0;
    bool xg = false; ///< the channel manager replays by itself

    bool operator==(const ChannelRun &) const = default;

    bool isIdle() const { return state == State::Idle; }
    bool isReplay() const { return state >= State::ReplayStarting && state <= State::ReplayStopping; }
    bool isRecording() const { return state >= State::RecordStarting; }
};

/// What is only shown of a channel.
struct ChannelProgress {
    quint64 position = 0;    ///< of a replay, in bytes of the record
    quint64 sizeBytes = 0;   ///< of the record
    quint64 recordBegin = 0; ///< its first position and the one behind its last
    quint64 recordEnd = 0;
    quint64 startUs = 0; ///< of the record: when its first and its last sample were taken
    quint64 stopUs = 0;

    bool operator==(const ChannelProgress &) const = default;
};

/// Why a command failed.
struct CommandError {
    quint64 number = 0; ///< counts the errors of a manager; 0: none yet
    quint32 code = 0;   ///< see docs/channels.md
    QString text{};

    bool operator==(const CommandError &) const = default;
};

struct Channel {
    QString id;
    ChannelSettings settings{};
    ChannelRun run{};
    ChannelProgress progress{};
    CommandError error{};

    bool operator==(const Channel &) const = default;
};

/// In the order of their registration.
using ChannelList = std::vector<Channel>;

} // namespace installation
