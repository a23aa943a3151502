#include "installation/manager/runcontext.h"

#include "coresupport/trace.h"

#include <atomic>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/runcontext";

/// Never the same twice, also not in a manager that has started again.
quint64 nextNumber()
{
    static std::atomic<quint64> last{nowUs()};
    return ++last;
}

} // namespace

RunContext::RunContext(std::shared_ptr<ChannelDirectory> channels, std::shared_ptr<const DeviceDirectory> devices,
                       const ManagerConfiguration::Timing &timing)
    : channels(std::move(channels)), devices(std::move(devices)), timing(timing)
{
}

TQ_KORVE::IF_Control_var RunContext::recorder(const QString &deviceId, quint32 number,
                                              std::optional<quint32> unknown) const
{
    const auto device = devices->find(deviceId);
    if (!device)
        throw ChannelFailure(unknown.value_or(number), QStringLiteral("there is no device \"%1\"").arg(deviceId));
    if (CORBA::is_nil(device->control))
        throw ChannelFailure(number, QStringLiteral("device %1 has not been found").arg(deviceId));
    return device->control;
}

void RunContext::begin(Channel &channel, State state)
{
    channel.run.state = state;
    channel.run.number = nextNumber();
    channel.run.step = channel.run.number;
    channel.run.startedUs = nowUs();
}

std::optional<Channel> RunContext::enter(const Channel &seen, State state) const
{
    return channels->change(seen.id, [&](Channel &channel) {
        if (channel.run.number != seen.run.number || channel.run.step != seen.run.step)
            return false;
        channel.run.state = state;
        channel.run.step = nextNumber();
        return true;
    });
}

Channel RunContext::note(const Channel &held, const std::function<void(Channel &)> &edit) const
{
    const auto noted = channels->change(held.id, [&](Channel &channel) {
        edit(channel);
        return channel.run.number == held.run.number;
    });
    if (noted)
        return *noted;
    Channel removed = held; // by force; whoever holds the run still ends it
    edit(removed);
    return removed;
}

void RunContext::leave(const Channel &held) const
{
    channels->change(held.id, [&](Channel &channel) {
        if (channel.run.number != held.run.number)
            return false;
        channel.run = {};
        return true;
    });
}

std::optional<Channel> RunContext::running(const QString &channelId, quint64 runNumber) const
{
    const auto channel = channels->find(channelId);
    return channel && channel->run.number == runNumber ? channel : std::nullopt;
}

void RunContext::noteFailure(const QString &channelId, const ChannelFailure &failure) const
{
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("channel %1: %2 (%3)").arg(channelId, failure.text(), QString::number(failure.number()));
    });
    channels->noteError(channelId, failure.number(), failure.text());
}

quint64 nowUs()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<quint64>(std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count());
}

} // namespace installation
