#include "apps/korvectl/recordingcommands.h"

#include "apps/korvectl/channelcalls.h"
#include "apps/korvectl/channelstates.h"
#include "apps/korvectl/console.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/managersession.h"

namespace korvectl
{

namespace
{

using KORVE_XML::KORVE_RecordData;

/// A recording that has ended by itself, as the number of the channel's exception says.
constexpr unsigned long channelNotActive = 802;

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

void begin(const CommandLine &line, ChannelCalls &calls)
{
    const Deed registering{Flow::Channel, QStringLiteral("registering a channel for a recording on %1").arg(line.device),
                           line.device, channelsCommand(line)};
    require(calls.add(wishFor(line)), registering);
    Answer answer;
    if (line.recording.sampleRateHz > 0)
        answer = calls.setSampleRate(line.recording.sampleRateHz, 0);
    if (answer.number == 0)
        answer = calls.startRecording(line.recording, line.name);
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
    begin(line, calls);
    const ChannelStates states(service, line.subsystem, line.timeout);
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
