#include "installation/manager/channelobjects.h"

#include "installation/manager/channelservant.h"

namespace installation
{

ChannelObjects::ChannelObjects(ServedObjects served, std::shared_ptr<ChannelCore> core)
    : served(std::move(served)), core(std::move(core))
{
}

void ChannelObjects::serve(const QString &id)
{
    // A servant lives until its last call is done, which may be longer than this.
    const ChannelServant::Removal removal = [weak = weak_from_this()](const QString &leaving, bool forced) {
        if (const auto objects = weak.lock())
            objects->remove(leaving, forced);
    };
    const std::scoped_lock lock(mutex); // also while it is made, which calls nobody: there is only one for a key
    if (!objects.contains(id))
        objects.emplace(id, served.serve<ChannelServant>("KorveChannel/" + id.toStdString(), id, core, removal));
}

TQ_KRV::IF_KRV_c_Chan_ptr ChannelObjects::find(const QString &id) const
{
    const std::scoped_lock lock(mutex);
    const auto found = objects.find(id);
    if (found == objects.end())
        return TQ_KRV::IF_KRV_c_Chan::_nil();
    const CORBA::Object_var object = found->second->reference();
    return TQ_KRV::IF_KRV_c_Chan::_unchecked_narrow(object);
}

void ChannelObjects::remove(const QString &id, bool forced)
{
    const auto channel = core->context.channels->find(id);
    if (!channel)
        return;
    if (forced)
        core->stopByForce(*channel);
    if (!core->context.channels->remove(id, [](const Channel &leaving) { return leaving.run.isIdle(); })) {
        core->context.noteFailure(id, ChannelFailure(failure::notReady, QStringLiteral("the channel is busy")));
        return;
    }
    core->context.channelManager(*channel).tell(
        [&](TQ_KRV::IF_KRV_c_ChanMan_ptr manager) { manager->ChannelRemoved(id.toUtf8().constData()); });
    std::shared_ptr<Activation> leaving; // goes when the lock has gone
    const std::scoped_lock lock(mutex);
    const auto found = objects.find(id);
    if (found != objects.end()) {
        leaving = found->second;
        objects.erase(found);
    }
}

} // namespace installation
