#pragma once

#include "idl/korvemanager.hh"
#include "orbconnection/vtconnectionobserver.h"
#include "tests/installation/manager/fakechannelmanager.h"
#include "tests/installation/manager/samplereceiver.h"

#include <QUdpSocket>

#include <functional>
#include <map>
#include <optional>

/// The one channel of a client, and what is behind it: a program that listens, or one that the manager asks.
///
/// Whenever it is made it is another one, so that what went wrong with the last is not in the way.
class TestChannel
{
public:
    using Command = std::function<std::string(TestChannel &)>;
    /// The caller releases what it answers.
    using FindManager = std::function<TQ_KRV::IF_KRV_c_KRV_ptr()>;

    /// @p address is the manager's host.
    TestChannel(const QString &address, const FindManager &findManager);
    ~TestChannel();
    TestChannel(const TestChannel &) = delete;

    /// What can be done with it, by the names that scripts use. Each answers "true", or the number of a failure as the
    /// manager shows it with the channel, "0" without one, or the name of an exception of the ORB.
    static const std::map<std::string, Command> &commands();

private:
    static const std::map<std::string, Command> &makingCommands();
    static const std::map<std::string, Command> &programCommands();
    static std::map<std::string, Command> refusalCommands();
    static const std::map<std::string, Command> &recordingCommands();

    /// A program listens at the channel's address; it takes what comes, and sends nothing.
    void makeWithListener();
    /// Datagrams are to come to a port of the recorder that somebody else has.
    void makeOnTakenPort();
    /// A program of ours is asked; the channel has an interface of that type.
    void makeWithProgram(TQ_KRV::interfaceTypeEnum type);
    void make(TQ_KRV::interfaceTypeEnum type, const QByteArray &receiver);
    void endProgram();
    void nameSource(TQ_KRV::interfaceTypeEnum type, CORBA::ULong ids);
    std::string startRecording();
    std::string numberOf(const std::function<void()> &command) const;
    /// Waits, bounded, for the first failure of the channel that the manager shows.
    std::string shownFailure() const;

    const QString address;
    const FindManager findManager;
    std::optional<VtConnectionObserver> mirror; ///< from the first channel on
    FakeChannelManager *const program; ///< counts its references
    std::optional<SampleReceiver> listener;
    QUdpSocket taken;
    TQ_KRV::IF_KRV_c_Chan_var channel;
    CORBA::String_var id;
    int made = 0;
};
