#include "apps/korvectl/replaycommands.h"

#include "apps/korvectl/adminsession.h"
#include "apps/korvectl/channelcalls.h"
#include "apps/korvectl/channelstates.h"
#include "apps/korvectl/console.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/recordscale.h"

#include "connectionmanagement/guitoserverreplaycorbahandler.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace korvectl
{

namespace
{

using Handler = KorveGUI::GuiToServerReplayCorbaHandler;
using KORVE_XML::KORVE_RecordData;
using KORVE_XML::NetIfParams;

/// The manager's number for a replay that is not there.
constexpr unsigned long notReplaying = 760;
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

/// The ids of this program's other channels that have not done anything: of commands that are about to use them, or that
/// were killed before they could.
QStringList unusedOf(const ChannelStates &states, const QString &ownName)
{
    QStringList ids;
    const QVector<ChannelState> all = states.channels();
    for (const ChannelState &state : all)
        if (isNameOfOurs(state.name) && state.name != ownName && state.isIdle() && state.record.isEmpty())
            ids << state.id;
    return ids;
}

/// Those that stay so for as long as a command may take.
QStringList abandonedOf(const ChannelStates &states, const QString &ownName)
{
    const QStringList before = unusedOf(states, ownName);
    QStringList abandoned;
    const auto areUsed = [&](const ChannelState &) {
        const QStringList now = unusedOf(states, ownName);
        abandoned.clear();
        std::copy_if(before.begin(), before.end(), std::back_inserter(abandoned),
                     [&now](const QString &id) { return now.contains(id); });
        return abandoned.isEmpty();
    };
    if (!before.isEmpty())
        states.waitFor(areUsed);
    return abandoned;
}

/// A channel for one replay to one receiver. The manager knows one that is left of an earlier one again, by its name.
/// Those that are left of replays to others go first, or it would give this replay to one of them.
class ReceiverChannel
{
public:
    ReceiverChannel(const CommandLine &line, const AdminSession &admin) : line(line), calls(admin.manager().handler()) {}

    void add(const KORVE_RecordData &record, quint64 rate, const ChannelStates &states)
    {
        const ChannelWish wish = wishFor(line, record);
        removeLeftOvers(states, wish.name());
        Deed deed = deedOf(line, Flow::Channel, QStringLiteral("registering a channel for"));
        deed.check = commandText(line, {QStringLiteral("replay"), QStringLiteral("status")});
        require(calls.add(wish), deed);
        const Answer answer = calls.setSampleRate(rate, RecordScale(record).sampleBytes());
        removeUnless(answer);
        require(answer, deedOf(line, Flow::Channel, QStringLiteral("setting the speed of")));
    }
    /// After what nobody knows the outcome of, it may be in use.
    void removeUnless(const Answer &answer)
    {
        if (answer.number != 0 && !answer.isUnknown)
            calls.remove();
    }
    const QString &id() const { return calls.id(); }
    void remove() { calls.remove(); }

private:
    void removeLeftOvers(const ChannelStates &states, const QString &ownName)
    {
        QStringList ids = abandonedOf(states, ownName);
        const QVector<ChannelState> all = states.channels();
        for (const ChannelState &state : all)
            if (isNameOfOurs(state.name) && state.isIdle() && !state.record.isEmpty())
                ids << state.id;
        for (const QString &id : std::as_const(ids))
            if (calls.find(id).number == 0)
                calls.remove();
    }

    const CommandLine &line;
    ChannelCalls calls;
};

/// What is to be replayed.
struct Part {
    KORVE_RecordData record;
    ByteRange range;
    quint64 rate; ///< 0: that of the record
};

/// The manager takes the first channel that it may, which need not be the one of this command.
void requireOurs(const CommandLine &line, Handler &handler, ReceiverChannel &receiver, const ChannelStates &states)
{
    const auto used = states.waitFor([&](const ChannelState &state) {
        return isOfRecord(state, line) && (state.isReplaying() || state.id == receiver.id()); // which may be over by now
    });
    if (!used || used->id == receiver.id())
        return;
    const unsigned long number = handler.StopReplay(line.device, line.record);
    receiver.remove();
    if (number != notReplaying) // it may be over by now
        require({number, handler.OutcomeIsUnknown()},
                deedOf(line, Flow::ControlReplay, QStringLiteral("stopping, since it went to another channel, the replay of")));
    throw Failure(ExitCode::Refused,
                  QStringLiteral("The manager gave the replay to channel %1, \"%2\", which was there before, and not to "
                                 "%3; it was stopped.")
                      .arg(used->id, used->name, line.link.peer->text()));
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

ExitCode startToAny(const CommandLine &line, Handler &handler, const Part &part)
{
    const unsigned long number = handler.StartReplay(line.device, line.record, part.record.GetDataRate(),
                                                     part.range.begin, part.range.end, line.link.replayCount);
    require({number, handler.OutcomeIsUnknown()}, deedOf(line, Flow::StartReplay, startWords()));
    return reportStart(line, {}, part.range);
}

ExitCode startTo(const CommandLine &line, AdminSession &admin, Handler &handler, const Part &part)
{
    const ChannelStates states(admin.centralService(), line.subsystem, line.timeout);
    ReceiverChannel receiver(line, admin);
    receiver.add(part.record, part.rate, states);
    const unsigned long number = handler.StartReplay(line.device, line.record, part.record.GetDataRate(),
                                                     part.range.begin, part.range.end, line.link.replayCount,
                                                     line.link.isUdp ? NetIfParams::UDP_IF : NetIfParams::TCP_IF);
    const Answer answer{number, handler.OutcomeIsUnknown()};
    receiver.removeUnless(answer);
    require(answer, deedOf(line, Flow::StartReplay, startWords()));
    requireOurs(line, handler, receiver, states);
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

/// Channels of this program live as long as their replay.
void removeChannelsOf(const CommandLine &line, const ManagerSession &session, const ChannelStates &states)
{
    const auto isOurs = [&](const ChannelState &state) { return isNameOfOurs(state.name) && isOfRecord(state, line); };
    const QVector<ChannelState> all = states.channels();
    if (std::none_of(all.begin(), all.end(), isOurs))
        return;
    ChannelCalls calls(session.handler());
    const auto left = states.waitFor([&](const ChannelState &state) { return isOurs(state) && state.isIdle(); });
    if (left && calls.find(left->id).number == 0)
        calls.remove();
}

} // namespace

ExitCode startReplay(const CommandLine &line)
{
    AdminSession admin(line);
    const KORVE_RecordData record = admin.record();
    const RecordScale scale(record);
    const ByteRange range = scale.rangesOf(line.sections).first();
    const quint64 rate = rateFor(line.link.speed, scale);
    Handler handler(admin.manager().handler());
    handler.Initialize(line.device);
    return line.link.peer ? startTo(line, admin, handler, {record, range, rate})
                          : startToAny(line, handler, {record, range, rate});
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
