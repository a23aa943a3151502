#include "installation/manager/channelservice.h"

#include "installation/manager/channelcheck.h"
#include "installation/manager/replayservant.h"

#include <future>
#include <set>
#include <utility>

namespace installation
{

ChannelService::ChannelService(const ManagerConfiguration &configuration, const ServedObjects &served,
                               std::shared_ptr<const DeviceDirectory> devices, ChannelDirectory::Listener listener)
    : core(std::make_shared<ChannelCore>(
          std::make_shared<ChannelDirectory>(configuration.stateFolder, std::move(listener)), std::move(devices),
          configuration)),
      objects(std::make_shared<ChannelObjects>(served, core))
{
    for (const Channel &channel : core->context.channels->list())
        objects->serve(channel.id);
    const std::shared_ptr<ReplayRun> shared(core, &core->replays);
    replays = served.serve<ReplayServant>("KorveManagerReplay", shared);
    core->resume();
}

ChannelService::~ChannelService()
{
    stop();
}

void ChannelService::stop()
{
    if (std::exchange(stopped, true))
        return;
    core->watch.stop();
    tellAll([](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) { manager->goingDown(); });
}

ChannelService::Registered ChannelService::registerChannel(const ChannelSettings &settings)
{
    checkSettings(settings);
    for (const QString &device : settings.devices())
        if (!core->context.devices->find(device))
            refuse(TQ_KRV::No_Korve_Device_Available, "there is no such device");
    if (core->context.devices->ids().isEmpty())
        refuse(TQ_KRV::No_Korve_Device_Available, "no device has been found yet");
    const QString id = addOrRenew(settings);
    objects->serve(id); // whoever finds a new channel first
    return {channel(id), id};
}

QString ChannelService::addOrRenew(const ChannelSettings &settings)
{
    using enum ChannelDirectory::Entry::State;
    for (QString gone;;) { // a program that has gone; at first nobody, whose channels are for everybody
        const auto entry = core->context.channels->enter(settings, [&](const Channel &known) {
            return known.settings.channelManager == settings.channelManager || known.settings.channelManager == gone;
        });
        if (entry.state == Full)
            refuse(TQ_KRV::Maximum_Number_Channels_Reached, "there are as many channels as can be");
        if (entry.state != Taken)
            return entry.channel.id;
        if (hasProgram(entry.channel))
            refuse(TQ_KRV::Invalid_Interface, "another program has a channel of this name");
        gone = entry.channel.settings.channelManager; // unless somebody else is faster with the next step
    }
}

bool ChannelService::hasProgram(const Channel &channel) const
{
    bool isGone = true;
    try {
        core->context.channelManager(channel).ask(
            [&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) { isGone = manager->_non_existent(); });
    } catch (const ChannelFailure &) { // it does not answer
    }
    return !isGone;
}

TQ_KRV::IF_KORVE_Replay_ptr ChannelService::replay(const QString &deviceId) const
{
    if (!core->context.devices->find(deviceId))
        return TQ_KRV::IF_KORVE_Replay::_nil();
    const CORBA::Object_var object = replays->reference();
    return TQ_KRV::IF_KORVE_Replay::_unchecked_narrow(object);
}

/// One after the other those that hang would hold up the end.
void ChannelService::tellAll(const std::function<void(TQ_KRV::IF_KRV_c_ChanMan_ptr)> &calls) const
{
    std::set<QString> told;
    std::vector<std::future<void>> running;
    for (const Channel &channel : core->context.channels->list())
        if (told.insert(channel.settings.channelManager).second)
            running.push_back(
                std::async(std::launch::async, [&, channel] { core->context.channelManager(channel).tell(calls); }));
}

} // namespace installation
