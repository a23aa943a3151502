#include "orbconnection/centralservicemanager.h"

#include "appruntime/threadswitchingadministration.h"
#include "coresupport/trace.h"
#include "orbconnection/namewatch.h"
#include "orbconnection/orbhandler.h"
#include "orbconnection/workerthread.h"

#include <QPointer>

namespace CorbaCommon
{
namespace
{
constexpr char sourceName[] = "orbconnection/centralservicemanager";

/// Takes what the central object service tells to the main thread.
class NameCallback : public POA_CCO::Callback
{
public:
    using Receiver = std::function<void(bool gone)>;

    explicit NameCallback(Receiver receiver) : receiver(std::move(receiver)) {}
    void notify(CORBA::ULong event, const char *) override
    {
        const bool gone = event == CCO::eventGone;
        door->post(ThreadingHelper::RunInMainThreadEvent([receiver = receiver, gone] { receiver(gone); }));
    }

private:
    const Receiver receiver;
    const std::shared_ptr<ThreadingHelper::ThreadSwitchingHandler> door =
        ThreadingHelper::ThreadSwitchingAdministration::CreateThreadSwitchingHandler(QLatin1String(sourceName));
};
} // namespace

class CentralServiceManager::Private
{
public:
    Private(CentralServiceManager *manager, const QString &name, const Timing &timing)
    {
        auto watch = std::make_unique<NameWatch>(name, timing);
        connect(watch.get(), &NameWatch::si_changed, manager, [manager, name](bool available) {
            Q_EMIT manager->si_notifyServerAvailablity(available, name);
        });
        activateCallback(manager, *watch);
        thread = std::make_unique<WorkerThread<NameWatch>>("CentralServiceManager", std::move(watch));
    }
    ~Private() { deactivateCallback(); }

    void activateCallback(CentralServiceManager *manager, NameWatch &watch);
    void deactivateCallback();

    PortableServer::ObjectId_var callbackId;
    std::unique_ptr<WorkerThread<NameWatch>> thread;
};

void CentralServiceManager::Private::activateCallback(CentralServiceManager *manager, NameWatch &watch)
{
    const OrbHandler &orb = OrbHandler::Instance();
    if (!orb.isRunning())
        return;
    const QPointer<CentralServiceManager> receiver(manager); // looked at on the main thread alone
    const PortableServer::ServantBase_var servant = new NameCallback([receiver](bool gone) {
        if (receiver)
            receiver->d->thread->post([gone](NameWatch &watch) { watch.told(gone); });
    });
    try {
        callbackId = orb.rootPoa()->activate_object(servant.in());
        const CORBA::Object_var object = orb.rootPoa()->id_to_reference(callbackId);
        watch.setCallback(CCO::Callback_var(CCO::Callback::_narrow(object)));
    } catch (const CORBA::Exception &e) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("No callback: %1; names are polled").arg(QLatin1String(e._name())); });
    }
}

void CentralServiceManager::Private::deactivateCallback()
{
    const OrbHandler &orb = OrbHandler::Instance();
    if (!callbackId.operator->() || !orb.isRunning())
        return;
    try {
        orb.rootPoa()->deactivate_object(callbackId);
    } catch (const CORBA::Exception &) {
        // The ORB is ending, and all servants with it.
    }
}

CentralServiceManager::CentralServiceManager(const QString &name, int missesUntilGone, int pollMs)
    : CentralServiceManager(name, Timing{missesUntilGone, std::chrono::milliseconds(pollMs)})
{
}

CentralServiceManager::CentralServiceManager(const QString &name, const Timing &timing)
    : d(std::make_unique<Private>(this, name, timing))
{
}

CentralServiceManager::~CentralServiceManager() = default;
} // namespace CorbaCommon
