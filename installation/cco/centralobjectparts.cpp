#include "installation/cco/centralobjectparts.h"

#include "installation/cco/holder.h"

#include "coresupport/trace.h"

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/cco/centralobjectparts";

void traceDropped(const std::string &name, const Holder &holder)
{
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("%1 is held by nobody: %2 does not answer any more")
            .arg(QString::fromStdString(name), QString::fromStdString(holder.description()));
    });
}

} // namespace

CentralObjectParts::CentralObjectParts(CORBA::ORB_ptr orb, CentralObjectConfiguration given)
    : configuration(std::move(given)), callbacks(configuration.timing.callbackLimit),
      registry([this](CORBA::ULong event, const std::string &name) { callbacks.tell(event, name); }),
      registrar(registry, configuration.timing.answerLimit), peers(orb, configuration),
      directory(configuration, peers, indications), prober(configuration.timing.probeInterval, [this] { return targets(); })
{
}

void CentralObjectParts::start()
{
    prober.start();
}

void CentralObjectParts::stop()
{
    prober.stop();
    callbacks.stop();
}

std::vector<Prober::Target> CentralObjectParts::targets()
{
    callbacks.reap();
    std::vector<Prober::Target> all = peers.targets();
    addRegistered(all);
    addCallbacks(all);
    return all;
}

void CentralObjectParts::addRegistered(std::vector<Prober::Target> &targets)
{
    const auto limit = configuration.timing.answerLimit;
    for (const Registry::Entry &entry : registry.entries()) {
        const Holder holder(entry.content);
        if (!holder.canBeAsked())
            continue; // mere values are there until somebody takes them away
        const auto probe = [this, entry, holder, limit] {
            if (registry.drop(entry, holder.ask(limit)))
                traceDropped(entry.name, holder);
        };
        targets.push_back({"name " + entry.name, probe, entry.owner});
    }
}

void CentralObjectParts::addCallbacks(std::vector<Prober::Target> &targets)
{
    for (const CallbackList::Registered &registered : callbacks.callbacks()) {
        const auto probe = [this, registered] {
            const auto limit = configuration.timing.answerLimit;
            callbacks.drop(registered.key, askObject(registered.callback, limit));
        };
        targets.push_back({"callback " + registered.key, probe, registered.owner});
    }
}

} // namespace installation
