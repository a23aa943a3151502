#pragma once

#include "tests/installation/manager/fakechannelmanager.h"
#include "tests/installation/manager/sessionrecorder.h"
#include "tests/installation/manager/samplereceiver.h"

#include "installation/manager/channelservice.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <optional>

/// Channels of a manager, with the fake recorder "REC1", which has the record "R1", and a fake channel manager.
class ChannelFixture : public testing::Test
{
protected:
    using State = installation::ChannelRun::State;

    ChannelFixture();
    ~ChannelFixture() override;

    void startService();
    /// As after a kill: nothing is told, nothing is stopped.
    void restartService();

    /// A channel that replays and records, to the address of `receiver` where there is no other.
    installation::ChannelSettings receiverChannel() const;
    installation::ChannelSettings managerChannel() const;
    /// Returns its id.
    QString add(const installation::ChannelSettings &settings);
    installation::Channel channel(const QString &id) const;
    /// Wait, bounded.
    bool becomes(const QString &id, State state) const;
    bool becomesStatus(const std::string &recordId, TQ_KORVE::eRECORD_STATUS status) const;

    CORBA::ULong startReplay(CORBA::ULongLong begin = 0, CORBA::ULongLong end = 1000000, CORBA::ULong count = 1);
    TQ_KRV::IF_KORVE_Replay_var replay() const;

    QTemporaryDir folder;
    installation::ManagerConfiguration configuration;
    std::shared_ptr<installation::DeviceDirectory> devices;
    std::optional<SessionRecorder> recorder;
    SampleReceiver receiver;
    FakeChannelManager *peer; ///< counted by the ORB
    std::optional<installation::Activation> peerActivation;
    std::optional<installation::ChannelService> service;
    mutable std::mutex mutex; // guards `shown`, which the threads of the channels write
    installation::ChannelList shown;
};
