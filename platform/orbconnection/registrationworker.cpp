#include "orbconnection/registrationworker.h"

#include "coresupport/trace.h"
#include "orbconnection/orbhandler.h"
#include "orbconnection/publishedendpoint.h"
#include "orbconnection/staleconnections.h"
#include "orbconnection/textsequence.h"

#include <utility>

namespace CorbaCommon
{
namespace
{
constexpr char sourceName[] = "orbconnection/registrationworker";
constexpr CORBA::ULong noRedundancy = 0;

/// Nil for a name without one; the caller releases it.
CORBA::Object_ptr objectAt(CCO::IF_CCO_c_ptr service, const char *path)
{
    try {
        return service->Resolve(path, CCO::rtThisServiceOnly);
    } catch (const CCO::IF_CCO_c_Naming::InvalidType &) { // it has values
        return CORBA::Object::_nil();
    }
}

/// "HOST:PORT", or its values.
QString holderOf(CCO::IF_CCO_c_ptr service, const char *path)
{
    try {
        const CORBA::Object_var object = objectAt(service, path);
        const Endpoint endpoint = CORBA::is_nil(object) ? Endpoint() : publishedEndpoint(object);
        if (endpoint.port != 0)
            return QStringLiteral("%1:%2").arg(endpoint.host).arg(endpoint.port);
        return toList(CCO::seqString_var(service->ResolveValues(path, CCO::rtThisServiceOnly))).join(u':');
    } catch (const CORBA::Exception &e) {
        return QLatin1String(e._name());
    }
}
} // namespace

RegistrationWorker::RegistrationWorker(const ServiceRegistration::Timing &timing,
                                       ServiceRegistration::Listener listener)
    : timing(timing), listener(std::move(listener)), repetition(this)
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
    withdraw(name); // what it had before may live on, and would keep the name
    offers[name] = offer;
    registerAll();
}

void RegistrationWorker::withdraw(const QString &name)
{
    if (!offers.contains(name))
        return;
    unregisterOne(name);
    offers.remove(name);
}

void RegistrationWorker::withdrawAll()
{
    unregisterAll();
    offers.clear();
}

void RegistrationWorker::registerAll()
{
    if (isTooEarly())
        return;
    QString name;
    QString reason;
    const State now = tryAll(name, reason);
    note(now, name, reason);
    const bool isNews = now == State::Refused && refused != name;
    if (now != State::Failing)
        refused = now == State::Refused ? name : QString();
    if (isNews)
        unregisterAll(); // nobody is to find a part of the names
}

/// A new central object service knows nobody yet: whoever was refused a name leaves the time of a repetition to its holder.
bool RegistrationWorker::isTooEarly()
{
    if (refused.isEmpty() || state != State::Failing || std::exchange(isBack, false))
        return false;
    try {
        CORBA::Object_var(pastStaleConnections([&] { return objectAt(service, refused.toUtf8().constData()); }));
        isBack = true;
    } catch (const CORBA::Exception &) {
        // It has not come back yet.
    }
    return true;
}

RegistrationWorker::State RegistrationWorker::tryAll(QString &name, QString &reason)
{
    QStringList names = offers.keys();
    if (offers.contains(refused))
        names.prepend(refused); // while that one is not to be had, the others are left alone
    for (const QString &next : std::as_const(names)) {
        name = next;
        const State now = registerOne(name, reason);
        if (now != State::Registered)
            return now; // each failure may have cost a time-out
    }
    return State::Registered;
}

RegistrationWorker::State RegistrationWorker::registerOne(const QString &name, QString &reason) const
{
    if (CORBA::is_nil(service)) {
        reason = QStringLiteral("the ORB does not run");
        return State::Failing;
    }
    try {
        pastStaleConnections([&, offer = offers[name], path = name.toUtf8()] {
            if (CORBA::is_nil(offer.object))
                service->RegisterValues(path.constData(), toSequence(offer.values), noRedundancy);
            else
                service->Register(path.constData(), offer.object, noRedundancy);
        });
        return State::Registered;
    } catch (const CORBA::NO_PERMISSION &) {
        return State::Refused;
    } catch (const CORBA::Exception &e) {
        reason = QLatin1String(e._name());
        return State::Failing;
    }
}

bool RegistrationWorker::unregisterOne(const QString &name)
{
    if (CORBA::is_nil(service))
        return false;
    try {
        pastStaleConnections([&, path = name.toUtf8()] { unregister(path.constData(), offers[name]); });
        return true;
    } catch (const CORBA::NO_PERMISSION &) {
        return true; // registered from another address: the name goes with what it stands for
    } catch (const CORBA::Exception &e) {
        note(State::Failing, name, QLatin1String(e._name()));
        return false;
    }
}

void RegistrationWorker::unregisterAll()
{
    for (auto it = offers.constBegin(); it != offers.constEnd(); ++it)
        if (!unregisterOne(it.key()))
            return; // a service that does not answer drops the names by itself
}

void RegistrationWorker::unregister(const char *path, const Offer &offer) const
{
    // The name may be somebody else's by now, or always have been.
    if (CORBA::is_nil(offer.object)) {
        if (toList(CCO::seqString_var(service->ResolveValues(path, CCO::rtThisServiceOnly))) == offer.values)
            service->UnregisterValues(path, noRedundancy);
        return;
    }
    const CORBA::Object_var found = objectAt(service, path);
    if (!CORBA::is_nil(found) && offer.object->_is_equivalent(found))
        CORBA::release(service->Unregister(path, noRedundancy));
}

void RegistrationWorker::note(State now, const QString &name, const QString &reason)
{
    if (now == state)
        return;
    const bool isNews = state != State::Untried || now != State::Registered;
    state = now;
    const QString why = describe(now, name, reason);
    if (isNews)
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return now != State::Refused ? why
                                         : QStringLiteral("%1. None of the names of this service is registered, so nobody "
                                                          "finds it; it tries again every %2 ms")
                                               .arg(why)
                                               .arg(timing.repetition.count());
        });
    if (listener)
        listener(now, why);
}

QString RegistrationWorker::describe(State now, const QString &name, const QString &reason) const
{
    switch (now) {
    case State::Untried:
        return QStringLiteral("Not tried yet");
    case State::Registered:
        return QStringLiteral("Registered at the central object service again");
    case State::Refused:
        return QStringLiteral("%1 is held by another, at %2").arg(name, holderOf(service, name.toUtf8().constData()));
    case State::Failing:
        return QStringLiteral("%1 cannot be registered at the central object service: %2").arg(name, reason);
    }
    return QString();
}
} // namespace CorbaCommon
