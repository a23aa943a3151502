#include "orbconnection/namewatch.h"

#include "coresupport/trace.h"
#include "orbconnection/orbhandler.h"

namespace CorbaCommon
{
namespace
{
constexpr char sourceName[] = "orbconnection/namewatch";

std::string identityOf(const CCO::seqString &values)
{
    std::string text;
    for (CORBA::ULong i = 0; i < values.length(); ++i)
        text.append("value ").append(values[i].in()).push_back('\n');
    return text;
}

std::string identityOf(CORBA::Object_ptr object)
{
    if (CORBA::is_nil(object))
        return std::string();
    const CORBA::String_var text = OrbHandler::Instance().orb()->object_to_string(object);
    return text.in();
}
} // namespace

NameWatch::NameWatch(const QString &name, const CentralServiceManager::Timing &timing)
    : name(name.toStdString()), timing(timing), poll(this)
{
    poll.setInterval(timing.poll);
    connect(&poll, &QTimer::timeout, this, &NameWatch::look);
}

NameWatch::~NameWatch()
{
    try {
        if (!CORBA::is_nil(registration))
            registration->unregister();
    } catch (const CORBA::Exception &) {
        // The service is away, and drops the callback by itself.
    }
}

void NameWatch::setCallback(CCO::Callback_ptr newCallback)
{
    callback = CCO::Callback::_duplicate(newCallback);
}

void NameWatch::start()
{
    service = OrbHandler::Instance().centralService(timing.callLimit);
    poll.start();
    look();
}

void NameWatch::told(bool gone)
{
    wasGone |= gone;
    look();
}

void NameWatch::look()
{
    if (!OrbHandler::Instance().CCOIsAvailable())
        return;
    try {
        ensureRegistration();
        const std::optional<std::string> identity = whatIsThere();
        if (identity && !identity->empty())
            found(*identity);
        else
            missed();
    } catch (const CORBA::Exception &e) {
        traceAt(TraceLevel::Debug, sourceName, [&] {
            return QStringLiteral("No answer on %1: %2").arg(QString::fromStdString(name), QLatin1String(e._name()));
        });
    }
}

void NameWatch::ensureRegistration()
{
    // A service that was started anew knows nothing of an earlier registration.
    if (CORBA::is_nil(callback) || (!CORBA::is_nil(registration) && !registration->_non_existent()))
        return;
    CCO::seqInterest interests;
    interests.length(2);
    interests[0].event = CCO::eventGone;
    interests[1].event = CCO::eventAvailable;
    for (CORBA::ULong i = 0; i < interests.length(); ++i)
        interests[i].name = name.c_str();
    const CCO::CBRegistration_var fresh = service->register_callback(callback, interests);
    registration = withCallLimit<CCO::CBRegistration>(fresh, timing.callLimit);
}

std::optional<std::string> NameWatch::whatIsThere()
{
    const CCO::seqString_var values = service->ResolveValues(name.c_str(), CCO::rtInstallation);
    if (values->length() > 0)
        return identityOf(values);
    try {
        const CORBA::Object_var object = service->Resolve(name.c_str(), CCO::rtInstallation);
        return identityOf(object);
    } catch (const CCO::IF_CCO_c_Naming::InvalidType &) {
        return std::nullopt; // an empty list of values says no more than none
    }
}

void NameWatch::found(const std::string &identity)
{
    misses = 0;
    const bool isNews = identity != known || wasGone;
    known = identity;
    wasGone = false;
    if (isNews)
        Q_EMIT si_changed(true);
}

void NameWatch::missed()
{
    if (known.empty() || ++misses < timing.missesUntilGone)
        return;
    known.clear();
    wasGone = false;
    misses = 0;
    Q_EMIT si_changed(false);
}
} // namespace CorbaCommon
