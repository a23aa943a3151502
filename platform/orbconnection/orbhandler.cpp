#include "orbconnection/orbhandler.h"

#include "coresupport/trace.h"
#include "orbconnection/backgroundthreads.h"
#include "orbconnection/calldeadline.h"
#include "orbconnection/incomingconnections.h"
#include "orbconnection/orboptions.h"
#include "orbconnection/staleconnections.h"
#include "orbconnection/textsequence.h"

#include <QCoreApplication>

#include <atomic>
#include <future>
#include <mutex>
#include <thread>
#include <type_traits>

namespace CorbaCommon
{
namespace
{
constexpr char sourceName[] = "orbconnection/orbhandler";
constexpr int mostDeadConnections = 16; // of all that a program has at one other, trees and commands together

/// What the one handler is to be made with.
struct Beginning {
    static Beginning &instance()
    {
        static Beginning beginning;
        return beginning;
    }
    OrbSettings begin()
    {
        const std::lock_guard lock(mutex);
        begun = true;
        return settings;
    }

    std::mutex mutex; // guards the two members below
    OrbSettings settings = OrbSettings::fromEnvironment();
    bool begun = false;
};

CORBA::ULong milliseconds(std::chrono::milliseconds duration)
{
    return static_cast<CORBA::ULong>(duration.count());
}

/// How long calls may take. The ORB gives a call that has to connect the longer of both limits, and so is told no more
/// for connecting than for the whole.
class CallLimits
{
public:
    explicit CallLimits(const OrbSettings &settings) : settings(settings) {}

    void setCall(std::chrono::milliseconds limit)
    {
        const std::lock_guard lock(mutex);
        changeWithConnect(settings.callTimeout, limit);
        omniORB::setClientCallTimeout(milliseconds(limit));
    }
    void setConnect(std::chrono::milliseconds limit)
    {
        const std::lock_guard lock(mutex);
        changeWithConnect(settings.connectTimeout, limit);
    }

private:
    void changeWithConnect(std::chrono::milliseconds &which, std::chrono::milliseconds limit)
    {
        const std::chrono::milliseconds before = settings.connectLimit();
        which = limit;
        if (settings.connectLimit() != before) // else what the program's arguments say stays
            omniORB::setClientConnectTimeout(milliseconds(settings.connectLimit()));
    }

    std::mutex mutex; // guards the settings, which any thread may change
    OrbSettings settings;
};

PortableServer::POA_ptr activePoa(CORBA::ORB_ptr orb, const char *name)
{
    const CORBA::Object_var object = orb->resolve_initial_references(name);
    PortableServer::POA_var poa = PortableServer::POA::_narrow(object);
    const PortableServer::POAManager_var manager = poa->the_POAManager();
    manager->activate();
    return poa._retn();
}
} // namespace

class OrbHandler::Private
{
public:
    explicit Private(const OrbSettings &settings) : settings(settings), limits(settings) {}

    void start();
    bool ask();
    bool probeAnswers();
    void noteAnswer(bool now, const char *reason);
    template <typename Call>
    std::invoke_result_t<Call, CCO::IF_CCO_c_ptr> answerOf(const char *operation, const Call &call);

    const OrbSettings settings;
    CallLimits limits;
    CORBA::ORB_var orb;
    PortableServer::POA_var rootPoa;
    PortableServer::POA_var keyedPoa;
    CCO::IF_CCO_c_var cco;
    CORBA::Object_var probe; // the same, with a short limit; of no type, so that it asks the object for its own
    std::atomic<bool> answers = false;
    std::atomic<bool> isCentralService = false;
    std::atomic<bool> isShutDown = false;
};

void OrbHandler::Private::start()
{
    const QStringList arguments = qApp ? QCoreApplication::arguments() : QStringList();
    OrbOptions options(settings, arguments);
    if (!options.haveCentralService()) { // another one might be that of another installation
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("The ORB does not start: the central object service is to be at \"%1\", which is "
                                  "not HOST or HOST:PORT (KORVE_CCO?)")
                .arg(settings.centralService);
        });
        return;
    }
    try {
        orb = CORBA::ORB_init(options.argumentCount(), options.arguments(), "omniORB4", options.pairs());
        watchIncomingConnections();
        keepCallsWithinTheirLimit();
        rootPoa = activePoa(orb, "RootPOA");
        keyedPoa = activePoa(orb, "omniINSPOA");
        const CORBA::Object_var object = orb->resolve_initial_references("CCO");
        cco = CCO::IF_CCO_c::_unchecked_narrow(object);
        const CORBA::String_var text = orb->object_to_string(object);
        probe = orb->string_to_object(text);
        omniORB::setClientCallTimeout(probe, milliseconds(settings.connectTimeout));
    } catch (const CORBA::Exception &e) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("The ORB cannot start at %1: %2 (is a port in use?)")
                .arg(settings.address, QLatin1String(e._name()));
        });
        rootPoa = PortableServer::POA::_nil();
    }
}

bool OrbHandler::Private::ask()
{
    try {
        const bool now = pastStaleConnections([this] { return probeAnswers(); });
        noteAnswer(now, now ? "" : "something else is there");
    } catch (const CORBA::SystemException &e) {
        noteAnswer(false, e._name());
    }
    return answers;
}

bool OrbHandler::Private::probeAnswers()
{
    // Looked at anew after each failure, since somebody else may be there then.
    if (isCentralService.exchange(false))
        return isCentralService = !probe->_non_existent();
    return isCentralService = probe->_is_a(CCO::IF_CCO_c::_PD_repoId);
}

void OrbHandler::Private::noteAnswer(bool now, const char *reason)
{
    if (answers.exchange(now) == now)
        return;
    traceAt(TraceLevel::Normal, sourceName, [&] {
        const QString where = settings.centralService;
        return now ? QStringLiteral("The central object service at %1 answers").arg(where)
                   : QStringLiteral("The central object service at %1 does not answer: %2")
                         .arg(where, QLatin1String(reason));
    });
}

template <typename Call>
std::invoke_result_t<Call, CCO::IF_CCO_c_ptr> OrbHandler::Private::answerOf(const char *operation, const Call &call)
{
    QString reason;
    try {
        if (!CORBA::is_nil(cco))
            return pastStaleConnections([&] { return call(cco.in()); });
        reason = QStringLiteral("the ORB does not run");
    } catch (const CORBA::Exception &e) {
        reason = QLatin1String(e._name());
    }
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("%1 has no answer: %2").arg(QLatin1String(operation), reason); });
    return {};
}

OrbHandler &OrbHandler::Instance()
{
    static OrbHandler *const handler = [] {
        // Twice, so that it comes after all that is there already: the way to the main thread is closed before, which
        // releases the calls that wait for that thread.
        qAddPostRoutine([] { qAddPostRoutine([] { Instance().shutdown(); }); });
        return new OrbHandler(Beginning::instance().begin());
    }();
    return *handler;
}

bool OrbHandler::configure(const OrbSettings &settings)
{
    Beginning &beginning = Beginning::instance();
    const std::lock_guard lock(beginning.mutex);
    if (beginning.begun) {
        traceAt(TraceLevel::Normal, sourceName,
                [] { return QStringLiteral("Settings come too late: the ORB runs already"); });
        return false;
    }
    beginning.settings = settings;
    return true;
}

OrbHandler::OrbHandler(const OrbSettings &settings) : d(std::make_unique<Private>(settings))
{
    d->start();
}

void OrbHandler::shutdown()
{
    if (CORBA::is_nil(d->orb) || d->isShutDown.exchange(true))
        return;
    d->answers = false;
    joinBackgroundThreads();
    try {
        d->orb->shutdown(true);
        d->orb->destroy();
    } catch (const CORBA::Exception &e) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("The ORB does not end: %1").arg(QLatin1String(e._name())); });
    }
}

void OrbHandler::setCallTimeout(std::chrono::milliseconds limit)
{
    d->limits.setCall(limit);
}

void OrbHandler::setConnectTimeout(std::chrono::milliseconds limit)
{
    d->limits.setConnect(limit);
}

bool OrbHandler::CCOIsAvailable()
{
    return isRunning() && d->ask();
}

bool OrbHandler::ConnectToCCO(int tries, int pauseMs)
{
    for (int i = 0; i < tries; ++i) {
        if (i > 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(pauseMs));
        if (CCOIsAvailable())
            return true;
    }
    return false;
}

CCO::IF_CCO_c_ptr OrbHandler::GetCCO() const
{
    return d->answers ? d->cco.in() : CCO::IF_CCO_c::_nil();
}

QString OrbHandler::GetSubSystemName()
{
    return d->answerOf("GetSubSystemName", [](CCO::IF_CCO_c_ptr cco) {
        const CORBA::String_var name = cco->GetSubSystemName();
        return QString::fromUtf8(name.in());
    });
}

QStringList OrbHandler::GetAllSubsystems()
{
    return d->answerOf("GetSubSystems", [](CCO::IF_CCO_c_ptr cco) {
        const CCO::seqString_var names = cco->GetSubSystems();
        return toList(names.in());
    });
}

QString OrbHandler::GetSubsystemOfWorkstation(const QString &workstation)
{
    return d->answerOf("GetWorkstations", [&](CCO::IF_CCO_c_ptr cco) {
        const CCO::seqString_var subsystems = cco->GetSubSystems();
        for (const QString &subsystem : toList(subsystems.in())) {
            const CCO::seqString_var workstations = cco->GetWorkstations(subsystem.toUtf8().constData());
            if (toList(workstations.in()).contains(workstation, Qt::CaseInsensitive))
                return subsystem;
        }
        return QString();
    });
}

CORBA::Object_ptr OrbHandler::ResolveInterfaceViaCCO(const char *path, const QString &workstation)
{
    if (!isRunning())
        throw CORBA::INV_OBJREF(0, CORBA::COMPLETED_NO);
    if (workstation.isEmpty())
        return d->cco->Resolve(path, CCO::rtInstallation);
    const QString reference = centralServiceReference(workstation);
    if (reference.isEmpty())
        throw CORBA::INV_OBJREF(0, CORBA::COMPLETED_NO);
    const CORBA::Object_var object = d->orb->string_to_object(reference.toLatin1().constData());
    const CCO::IF_CCO_c_var remote = CCO::IF_CCO_c::_unchecked_narrow(object);
    return remote->Resolve(path, CCO::rtInstallation);
}

CCO::IF_CCO_c_ptr OrbHandler::centralService(std::chrono::milliseconds limit) const
{
    if (!isRunning())
        return CCO::IF_CCO_c::_nil();
    const CORBA::String_var text = d->orb->object_to_string(d->cco);
    const CORBA::Object_var object = d->orb->string_to_object(text);
    CCO::IF_CCO_c_var reference = CCO::IF_CCO_c::_unchecked_narrow(object);
    omniORB::setClientCallTimeout(reference, milliseconds(limit));
    return reference._retn();
}

bool OrbHandler::isRunning() const
{
    return !CORBA::is_nil(d->rootPoa) && !d->isShutDown;
}

const OrbSettings &OrbHandler::settings() const
{
    return d->settings;
}

CORBA::ORB_ptr OrbHandler::orb() const
{
    return d->orb;
}

PortableServer::POA_ptr OrbHandler::rootPoa() const
{
    return d->rootPoa;
}

PortableServer::POA_ptr OrbHandler::keyedPoa() const
{
    return d->keyedPoa;
}

void useUpDeadConnections(CORBA::Object_ptr object, std::chrono::milliseconds limit)
{
    const CORBA::Object_var probe = separateReference(object);
    if (CORBA::is_nil(probe))
        return;
    omniORB::setClientCallTimeout(probe, milliseconds(limit));
    const auto end = std::make_shared<std::promise<void>>();
    std::future<void> ended = end->get_future();
    // In the background, since a call that has to connect first may take longer than its limit.
    runInBackground([probe, end] {
        try {
            pastStaleConnections([&] { return probe->_non_existent(); }, mostDeadConnections);
        } catch (const CORBA::SystemException &) {
            // Whether anybody is there is for the next call to find out.
        }
        end->set_value();
    });
    ended.wait_for(limit);
}

CORBA::Object_ptr separateReference(CORBA::Object_ptr object)
{
    const OrbHandler &handler = OrbHandler::Instance();
    if (!handler.isRunning() || CORBA::is_nil(object))
        return CORBA::Object::_nil();
    const CORBA::String_var text = handler.orb()->object_to_string(object);
    return handler.orb()->string_to_object(text);
}
} // namespace CorbaCommon
