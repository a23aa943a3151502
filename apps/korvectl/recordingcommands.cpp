#include "apps/korvectl/recordingcommands.h"

#include "apps/korvectl/channelcalls.h"
#include "apps/korvectl/channelstates.h"
#include "apps/korvectl/console.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/managersession.h"

#include "connectionmanagement/errorcatalogue.h"

#include <algorithm>

namespace korvectl
{

namespace
{

using KORVE_XML::KORVE_RecordData;

/// The first number of a channel's exceptions, which a recording that has ended by itself has, too.
constexpr unsigned long channelNotActive = 802;
constexpr unsigned long rangeError = 805; ///< the last of these

QString channelsCommand(const CommandLine &line)
{
    return commandText(line, {QStringLiteral("replay"), QStringLiteral("status")});
}

ChannelWish wishFor(const CommandLine &line)
{
    const KORVE_RecordData names;
    return {line.device,
            names.NameToDataRate(line.recording.dataRate),
            names.NameToDataFormat(line.recording.dataFormat),
            true,
            *line.link.peer,
            line.link.isUdp};
}

/// The exceptions of channels tell little; the tree tells the cause, if there is another.
Answer withCause(const Answer &answer, const QString &channel, const ChannelStates &states, const QString &errorBefore)
{
    if (answer.number < channelNotActive || answer.number > rangeError)
        return answer;
    const auto told = states.waitFor([&](const ChannelState &state) {
        return state.id == channel && state.errorNumber() != 0 && state.error != errorBefore;
    });
    if (!told)
        return answer;
    const unsigned long number = told->errorNumber();
    const bool isKnown = KorveManagement::ErrorCatalogue::isKnown(number, Flow::StartRecording);
    return {number, false, isKnown ? QString() : told->errorText()};
}

QString errorOf(const ChannelStates &states, const QString &channel)
{
    const QVector<ChannelState> all = states.channels();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const ChannelState &state) { return state.id == channel; });
    return found == all.end() ? QString() : found->error;
}

void begin(const CommandLine &line, ChannelCalls &calls, const ChannelStates &states)
{
    const Deed registering{Flow::Channel, QStringLiteral("registering a channel for a recording on %1").arg(line.device),
                           line.device, channelsCommand(line)};
    require(calls.add(wishFor(line)), registering);
    const QString errorBefore = errorOf(states, calls.id());
    Answer answer = calls.setSampleRate(line.recording.sampleRateHz, 0);
    if (answer.number == 0)
        answer = withCause(calls.startRecording(line.recording, line.name), calls.id(), states, errorBefore);
    if (answer.number != 0 && !answer.isUnknown)
        calls.remove(); // else it may be in use
    require(answer, {Flow::StartRecording, QStringLiteral("starting a recording on %1").arg(line.device), line.device,
                     channelsCommand(line)});
}

ExitCode report(const CommandLine &line, const ChannelState &state, const char *sentence)
{
    print(line.json ? jsonText(QJsonObject{{QStringLiteral("channel"), state.id},
                                           {QStringLiteral("device"), state.device},
                                           {QStringLiteral("record"), state.record}})
                    : QLatin1String(sentence) + QStringLiteral(" channel %1, device %2, record %3\n")
                                                    .arg(state.id, state.device, state.record));
    return ExitCode::Success;
}

} // namespace

ExitCode startRecording(const CommandLine &line)
{
    const CentralService service(line.timeout);
    const ManagerSession session(service, line.subsystem, line.timeout);
    ChannelCalls calls(session.handler());
    const ChannelStates states(service, line.subsystem, line.timeout);
    begin(line, calls, states);
    const auto state = states.waitFor(
        [&](const ChannelState &candidate) { return candidate.id == calls.id() && !candidate.record.isEmpty(); });
    return report(line, state.value_or(ChannelState{calls.id(), {}, line.device}), "Recording:");
}

ExitCode stopRecording(const CommandLine &line)
{
    const CentralService service(line.timeout);
    const ManagerSession session(service, line.subsystem, line.timeout);
    const QString words = QStringLiteral("stopping the recording of channel %1").arg(line.channel);
    const Deed stopping{Flow::StopRecording, words, line.channel, channelsCommand(line)};
    ChannelCalls calls(session.handler());
    require(calls.find(line.channel), {Flow::Channel, words, line.channel});
    const ChannelStates states(service, line.subsystem, line.timeout);
    const auto isIt = [&](const ChannelState &state) { return state.id == line.channel; };
    const ChannelState before = states.waitFor(isIt).value_or(ChannelState{line.channel});
    const Answer answer = calls.stopRecording(line.text);
    if (answer.number != channelNotActive)
        require(answer, stopping);
    if (isNameOfOurs(before.name) &&
        states.waitFor([&](const ChannelState &state) { return isIt(state) && state.isIdle(); }))
        calls.remove();
    require(answer, stopping);
    return report(line, before, "Stopped:");
}

} // namespace korvectl
