#include "installation/cco/centralobjectparts.h"

#include "installation/cco/liveness.h"

#include "coresupport/trace.h"

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/cco/centralobjectparts";

void traceDropped(const std::string &name)
{
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("%1 does not answer any more and is dropped").arg(QString::fromStdString(name));
    });
}

} // namespace

CentralObjectParts::CentralObjectParts(CORBA::ORB_ptr orb, CentralObjectConfiguration given)
    : configuration(std::move(given)), callbacks(configuration.timing.callbackLimit),
      registry([this](CORBA::ULong event, const std::string &name) { callbacks.tell(event, name); }),
      peers(orb, configuration), directory(configuration, peers, indications),
      prober(configuration.timing.probeInterval, [this] { return targets(); })
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
        std::function<bool()> answers;
        if (const auto *object = std::get_if<CORBA::Object_var>(&entry.content))
            answers = [object = *object, limit] { return objectAnswers(object, limit); };
        else if (const auto address = addressIn(std::get<Registry::Values>(entry.content)))
            answers = [address = *address] { return addressAnswers(address); };
        else
            continue; // mere values are there until somebody takes them away
        targets.push_back({"name " + entry.name, [this, entry, answers] {
                               if (!answers() && registry.drop(entry))
                                   traceDropped(entry.name);
                           }});
    }
}

void CentralObjectParts::addCallbacks(std::vector<Prober::Target> &targets)
{
    for (const CallbackList::Registered &registered : callbacks.callbacks())
        targets.push_back({"callback " + registered.key, [this, registered] {
                               if (!objectAnswers(registered.callback, configuration.timing.answerLimit))
                                   callbacks.remove(registered.key);
                           }});
}

} // namespace installation
