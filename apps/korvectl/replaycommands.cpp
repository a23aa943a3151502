#include "apps/korvectl/replaycommands.h"

#include "apps/korvectl/adminsession.h"
#include "apps/korvectl/channelcalls.h"
#include "apps/korvectl/channelstates.h"
#include "apps/korvectl/console.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/receiverchannel.h"

#include "connectionmanagement/guitoserverreplaycorbahandler.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace korvectl
{

namespace
{

using Handler = KorveGUI::GuiToServerReplayCorbaHandler;
using KORVE_XML::KORVE_RecordData;

/// The manager's numbers for a replay that has nowhere to go.
constexpr unsigned long noChannelForDevice = 753;
constexpr unsigned long noChannelForReplay = 761;
constexpr quint64 unlimitedRate = std::numeric_limits<quint32>::max();

QString recordWords(const CommandLine &line)
{
    return QStringLiteral("record %1 on %2").arg(line.record, line.device);
}

QString statusCommand(const CommandLine &line)
{
    return commandText(line,
                       {QStringLiteral("replay"), QStringLiteral("status"), line.device, line.record});
}

Deed deedOf(const CommandLine &line, Flow flow, const QString &doing)
{
    return {flow, QStringLiteral("%1 %2").arg(doing, recordWords(line)), line.record, statusCommand(line)};
}

QString startWords()
{
    return QStringLiteral("starting the replay of");
}

bool isOfRecord(const ChannelState &state, const CommandLine &line)
{
    return state.device == line.device && state.record == line.record;
}

ChannelWish wishFor(const CommandLine &line, const KORVE_RecordData &record)
{
    return {line.device, record.GetDataRate(), record.GetDataFormat(), false, *line.link.peer, line.link.isUdp};
}

/// In samples per second; 0: that of the record.
quint64 rateFor(const Speed &speed, const RecordScale &scale)
{
    if (speed.isUnlimited)
        return unlimitedRate;
    if (speed.factor == 1)
        return 0;
    const double rate = static_cast<double>(scale.sampleRateHz()) * speed.factor;
    if (rate < 1 || rate >= static_cast<double>(unlimitedRate))
        throw Failure(ExitCode::Usage, QStringLiteral("The record has %1 samples per second; at that speed, there is no "
                                                      "such rate.")
                                           .arg(scale.sampleRateHz()));
    return static_cast<quint64>(std::llround(rate));
}

ExitCode reportStart(const CommandLine &line, const QString &channel, const ByteRange &range)
{
    const QString target = line.link.peer ? line.link.peer->text() : QStringLiteral("a registered channel");
    QJsonObject object{{QStringLiteral("device"), line.device},
                       {QStringLiteral("record"), line.record},
                       {QStringLiteral("beginBytes"), jsonNumber(range.begin)},
                       {QStringLiteral("endBytes"), jsonNumber(range.end)},
                       {QStringLiteral("to"), target}};
    if (!channel.isEmpty())
        object.insert(QStringLiteral("channel"), channel);
    print(line.json ? jsonText(object)
                    : QStringLiteral("The %1 is replayed to %2.\n").arg(recordWords(line), target));
    return ExitCode::Success;
}

/// @throws Failure that names the option by which a replay has somewhere to go, if that is what is missing.
void requireStart(const Answer &answer, const Deed &deed)
{
    if (answer.number != noChannelForDevice && answer.number != noChannelForReplay)
        return require(answer, deed);
    const Failure failure = failureOf(answer, deed);
    throw Failure(failure.exitCode,
                  QString::fromUtf8(failure.what()) + QStringLiteral(" Name a receiver with --to HOST:PORT."));
}

ExitCode startToAny(const CommandLine &line, const AdminSession &admin, const ReplayPart &part)
{
    closeLeftOvers(admin.manager().handler(), ChannelStates(admin.centralService(), line.subsystem, line.timeout));
    Handler handler(admin.manager().handler());
    handler.Initialize(line.device);
    const unsigned long number = handler.StartReplay(part.device, part.record, part.rate, part.range.begin,
                                                     part.range.end, part.count);
    requireStart({number, handler.OutcomeIsUnknown()}, deedOf(line, Flow::StartReplay, startWords()));
    return reportStart(line, {}, part.range);
}

ExitCode startTo(const CommandLine &line, const AdminSession &admin, const KORVE_RecordData &record,
                 const ReplayPart &part)
{
    const RecordScale scale(record);
    const quint64 rate = rateFor(line.link.speed, scale);
    const ChannelStates states(admin.centralService(), line.subsystem, line.timeout);
    ReceiverChannel receiver(admin.manager().handler(), states);
    Deed registering = deedOf(line, Flow::Channel, QStringLiteral("registering a channel for"));
    registering.check = commandText(line, {QStringLiteral("replay"), QStringLiteral("status")});
    require(receiver.add(wishFor(line, record)), registering);
    const Answer answer = receiver.setSampleRate(rate, scale.sampleBytes());
    if (answer.number != 0 && !answer.isUnknown)
        receiver.remove();
    require(answer, deedOf(line, Flow::Channel, QStringLiteral("setting the speed of")));
    require(receiver.start(part), deedOf(line, Flow::StartReplay, startWords()));
    return reportStart(line, receiver.id(), part.range);
}

struct Control {
    const char *doing;
    const char *done;
    unsigned long (Handler::*operation)(const QString &, const QString &);
};

void control(const CommandLine &line, const ManagerSession &session, const Control &control)
{
    Handler handler(session.handler());
    if (!handler.Initialize(line.device))
        session.device(line.device); // for the reason
    const unsigned long number = (handler.*control.operation)(line.device, line.record);
    require({number, handler.OutcomeIsUnknown()},
            deedOf(line, Flow::ControlReplay, QLatin1String(control.doing) + QStringLiteral(" the replay of")));
    print(line.json ? jsonText(QJsonObject{{QStringLiteral("device"), line.device},
                                           {QStringLiteral("record"), line.record},
                                           {QStringLiteral("replay"), QLatin1String(control.done)}})
                    : QStringLiteral("The replay of %1 is %2.\n").arg(recordWords(line), QLatin1String(control.done)));
}

/// Removes this program's channels for the record when they are idle, also those that earlier replays have left.
void removeChannelsOf(const CommandLine &line, const ManagerSession &session, const ChannelStates &states)
{
    QVector<ChannelState> ours;
    states.waitUntil([&] {
        ours = states.channels();
        const auto isOther = [&](const ChannelState &state) { return !isNameOfOurs(state.name) || !isOfRecord(state, line); };
        ours.erase(std::remove_if(ours.begin(), ours.end(), isOther), ours.end());
        return std::all_of(ours.begin(), ours.end(), [](const ChannelState &state) { return state.isIdle(); });
    });
    ChannelCalls calls(session.handler());
    for (const ChannelState &state : std::as_const(ours))
        if (state.isIdle() && calls.find(state.id).number == 0)
            calls.remove();
}

} // namespace

ExitCode startReplay(const CommandLine &line)
{
    AdminSession admin(line);
    const KORVE_RecordData record = admin.record();
    const ReplayPart part{line.device, line.record, record.GetDataRate(),
                          RecordScale(record).rangesOf(line.sections).first(), line.link.replayCount};
    return line.link.peer ? startTo(line, admin, record, part) : startToAny(line, admin, part);
}

ExitCode pauseReplay(const CommandLine &line)
{
    const CentralService service(line.timeout);
    control(line, ManagerSession(service, line.subsystem, line.timeout),
            {"pausing", "paused", &Handler::PauseReplay});
    return ExitCode::Success;
}

ExitCode continueReplay(const CommandLine &line)
{
    const CentralService service(line.timeout);
    control(line, ManagerSession(service, line.subsystem, line.timeout),
            {"continuing", "continued", &Handler::ContinueReplay});
    return ExitCode::Success;
}

ExitCode stopReplay(const CommandLine &line)
{
    const CentralService service(line.timeout);
    const ManagerSession session(service, line.subsystem, line.timeout);
    control(line, session, {"stopping", "stopped", &Handler::StopReplay});
    try {
        removeChannelsOf(line, session, ChannelStates(service, line.subsystem, line.timeout));
    } catch (const Failure &failure) {
        complain(QStringLiteral("Its channel is left: %1").arg(QString::fromUtf8(failure.what())));
    }
    return ExitCode::Success; // the replay is stopped
}

ExitCode showReplays(const CommandLine &line)
{
    const CentralService service(line.timeout);
    QVector<ChannelState> channels = ChannelStates(service, line.subsystem, line.timeout).channels();
    const auto isOther = [&](const ChannelState &state) {
        return (!line.device.isEmpty() && state.device != line.device) ||
               (!line.record.isEmpty() && state.record != line.record);
    };
    channels.erase(std::remove_if(channels.begin(), channels.end(), isOther), channels.end());
    print(line.json ? channelsJson(channels) : channelsTable(channels));
    return ExitCode::Success;
}

} // namespace korvectl
