#include "orbconnection/registrationworker.h"

#include "coresupport/trace.h"
#include "orbconnection/orbhandler.h"
#include "orbconnection/staleconnections.h"

namespace CorbaCommon
{
namespace
{
constexpr char sourceName[] = "orbconnection/registrationworker";
constexpr CORBA::ULong noRedundancy = 0;

CCO::seqString toSequence(const QStringList &list)
{
    CCO::seqString sequence;
    sequence.length(static_cast<CORBA::ULong>(list.size()));
    for (int i = 0; i < list.size(); ++i)
        sequence[static_cast<CORBA::ULong>(i)] = list[i].toUtf8().constData();
    return sequence;
}
} // namespace

RegistrationWorker::RegistrationWorker(const ServiceRegistration::Timing &timing) : timing(timing), repetition(this)
{
    repetition.setInterval(timing.repetition);
    connect(&repetition, &QTimer::timeout, this, &RegistrationWorker::registerAll);
}

void RegistrationWorker::start()
{
    service = OrbHandler::Instance().centralService(timing.callLimit);
    repetition.start();
}

void RegistrationWorker::offer(const QString &name, const Offer &offer)
{
    offers[name] = offer;
    registerOne(name, offer);
}

void RegistrationWorker::withdraw(const QString &name)
{
    const auto position = offers.find(name);
    if (position == offers.end())
        return;
    unregisterOne(name, *position);
    offers.erase(position);
}

void RegistrationWorker::withdrawAll()
{
    repetition.stop();
    for (auto it = offers.constBegin(); it != offers.constEnd(); ++it)
        if (!unregisterOne(it.key(), it.value()))
            break; // a service that does not answer drops the names by itself
    offers.clear();
}

bool RegistrationWorker::registerOne(const QString &name, const Offer &offer)
{
    return succeeds(name, [&](const char *path) {
        if (CORBA::is_nil(offer.object))
            service->RegisterValues(path, toSequence(offer.values), noRedundancy);
        else
            service->Register(path, offer.object, noRedundancy);
    });
}

void RegistrationWorker::registerAll()
{
    for (auto it = offers.constBegin(); it != offers.constEnd(); ++it)
        if (!registerOne(it.key(), it.value()))
            return; // each failure may have cost a time-out
}

bool RegistrationWorker::unregisterOne(const QString &name, const Offer &offer)
{
    return succeeds(name, [&](const char *path) {
        if (CORBA::is_nil(offer.object))
            service->UnregisterValues(path, noRedundancy);
        else
            CORBA::release(service->Unregister(path, noRedundancy));
    });
}

template <typename Call> bool RegistrationWorker::succeeds(const QString &name, const Call &call)
{
    const auto note = [&](bool now, const char *reason) {
        if (failing != now)
            return now;
        failing = !now;
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return now ? QStringLiteral("Registered at the central object service again")
                       : QStringLiteral("%1 cannot be registered at the central object service: %2")
                             .arg(name, QLatin1String(reason));
        });
        return now;
    };
    if (CORBA::is_nil(service))
        return note(false, "the ORB does not run");
    try {
        pastStaleConnections([&, path = name.toUtf8()] { call(path.constData()); });
        return note(true, "");
    } catch (const CORBA::Exception &e) {
        return note(false, e._name());
    }
}
} // namespace CorbaCommon
