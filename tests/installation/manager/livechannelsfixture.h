#pragma once

#include "tests/installation/manager/managerfixture.h"
#include "tests/installation/manager/samplereceiver.h"
#include "tests/support/waiting.h"

#include "installation/manager/channel.h"

#include <mutex>

/// Channels of a manager over a real recorder, which has one record of ten seconds; beside a receiver of samples.
class LiveChannels : public ManagerFixture
{
protected:
    using State = installation::ChannelRun::State;

    static constexpr quint64 fullSpeed = 0xffffffff;
    static constexpr int sampleCount = 80000;
    static constexpr quint64 size = 2 * sampleCount;

    LiveChannels();
    ~LiveChannels() override { service.reset(); } // before what the listener uses

    void startManagerWithChannels();
    /// A channel for replays to that address and recordings from there; by TCP unless told otherwise.
    TQ_KRV::IF_KRV_c_Chan_var registerReceiver(const QString &address, quint64 samplesPerSecond,
                                               TQ_KRV::interfaceTypeEnum type = TQ_KRV::TCP_IF);
    CORBA::ULong start(quint64 begin, quint64 end, CORBA::ULong count = 1);
    TQ_KRV::IF_KORVE_Replay_var replay() const { return manager->getKorveReplayInterface("REC1"); }
    TQ_KORVE::IF_Control_var control() const;
    /// The one that was registered first.
    installation::Channel channel() const;
    bool isThere(const QString &channelId) const;

    // What the manager and the files of the recorder say of a record.
    TQ_KRV::struRECORD_DATA_var recordData(const QByteArray &id) const;
    TQ_KRV::eRECORD_STATUS status(const QByteArray &id) const { return recordData(id)->recordStatus; }
    QByteArray stored(const QByteArray &id) const;

    /// All wait, bounded.
    bool becomes(State state) const;
    bool positionPasses(quint64 position) const;
    bool sizePasses(quint64 bytes) const;
    bool receives(quint64 bytes) const;

    QByteArray record;
    SampleReceiver receiver;

private:
    mutable std::mutex mutex; // guards `shown`, which the threads of the channels write
    installation::ChannelList shown;
};
