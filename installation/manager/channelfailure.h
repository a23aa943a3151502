#pragma once

#include "idl/korve.hh"
#include "idl/korvemanager.hh"

#include <QString>

#include <functional>
#include <stdexcept>

namespace installation
{

/// The numbers that the manager itself finds a reason for; the others are those of a remote exception.
namespace failure
{
inline constexpr quint32 positionsEmpty = 27;
inline constexpr quint32 positionsEqual = 28;
inline constexpr quint32 positionsReversed = 29;
inline constexpr quint32 resources = 752;
inline constexpr quint32 unknownChannel = 753;
inline constexpr quint32 noDataFlow = 754;
inline constexpr quint32 channelNotActive = 755;
inline constexpr quint32 notConnected = 756;
inline constexpr quint32 notDisconnected = 757;
inline constexpr quint32 channelFault = 758;
inline constexpr quint32 notReplaying = 760;
inline constexpr quint32 notEnabledForReplay = 761;
inline constexpr quint32 unknownRecord = 766;
inline constexpr quint32 nothingToContinue = 767;
inline constexpr quint32 wrongState = 768;
inline constexpr quint32 unknownDevice = 769; ///< of a replay to be started; client and manager know different ones
inline constexpr quint32 channelManagerGone = 770;
inline constexpr quint32 nothingToPause = 771;
inline constexpr quint32 noXgInterface = 780;
inline constexpr quint32 linkFault = 905;
inline constexpr quint32 noCapacity = 803;
inline constexpr quint32 invalidDevice = 804;
inline constexpr quint32 outOfRange = 805;
inline constexpr quint32 notReady = 850;
inline constexpr quint32 noSession = 852;
inline constexpr quint32 noDevice = 853;
inline constexpr quint32 numbersDiffer = 854;
inline constexpr quint32 noConnectionId = 855;
} // namespace failure

/// Why a command on a channel failed: a number for programs, and a text.
class ChannelFailure : public std::runtime_error
{
public:
    enum class Outcome { NotDone, Unknown };

    ChannelFailure(quint32 number, const QString &text, Outcome outcome = Outcome::NotDone)
        : std::runtime_error(text.toStdString()), code(number), outcome(outcome)
    {
    }

    quint32 number() const { return code; }
    QString text() const { return QString::fromUtf8(what()); }
    /// It may have been carried out all the same.
    bool isOutcomeUnknown() const { return outcome == Outcome::Unknown; }

private:
    quint32 code;
    Outcome outcome;
};

/// What is to be done: an exception of a recorder means something else in each of these.
enum class ChannelCommand { StartReplay, PauseReplay, ContinueReplay, StopReplay, StartRecording, StopRecording };

/// Makes calls to a recorder; whatever it raises leaves as a ChannelFailure with the number that @p command has for it.
void askRecorder(ChannelCommand command, const std::function<void()> &calls);
/// Makes calls that carry the command out, as askRecorder() does: the failure tells whether the recorder may have done so.
void orderRecorder(ChannelCommand command, const std::function<void()> &calls);
/// Makes calls to a channel manager; whatever it raises leaves as a ChannelFailure.
void askChannelManager(const std::function<void()> &calls);

/// The kind of `exChan` that says the same.
TQ_KRV::IF_KRV_c_Chan::eChanKind kindOf(quint32 number);

} // namespace installation
