#include "orbconnection/serviceregistration.h"

#include "orbconnection/orbhandler.h"
#include "orbconnection/registrationworker.h"
#include "orbconnection/workerthread.h"

#include <future>

namespace CorbaCommon
{
class ServiceRegistration::Private
{
public:
    Private(const Timing &timing, Listener listener)
        : callLimit(timing.callLimit),
          thread("ServiceRegistration", std::make_unique<RegistrationWorker>(timing, std::move(listener)))
    {
    }
    void offer(const QString &name, const RegistrationWorker::Offer &offer)
    {
        thread.post([name, offer](RegistrationWorker &worker) { worker.offer(name, offer); });
    }

    const std::chrono::milliseconds callLimit;
    WorkerThread<RegistrationWorker> thread;
};

ServiceRegistration::ServiceRegistration() : ServiceRegistration(Timing())
{
}

ServiceRegistration::ServiceRegistration(const Timing &timing, Listener listener)
    : d(std::make_unique<Private>(timing, std::move(listener)))
{
}

ServiceRegistration::~ServiceRegistration()
{
    d->thread.post([](RegistrationWorker &worker) {
        worker.withdrawAll();
        worker.thread()->quit();
    });
    d->thread.join();
}

void ServiceRegistration::registerObject(const QString &name, CORBA::Object_ptr object)
{
    d->offer(name, {CORBA::Object::_duplicate(object), {}});
}

void ServiceRegistration::registerValues(const QString &name, const QStringList &values)
{
    d->offer(name, {CORBA::Object::_nil(), values});
}

void ServiceRegistration::registerEndpoint(const QString &name, unsigned short port)
{
    registerValues(name, {OrbHandler::Instance().settings().published(), QString::number(port)});
}

void ServiceRegistration::unregister(const QString &name)
{
    d->thread.post([name](RegistrationWorker &worker) { worker.withdraw(name); });
}

void ServiceRegistration::unregisterAll()
{
    d->thread.post([](RegistrationWorker &worker) { worker.withdrawAll(); });
}

bool ServiceRegistration::waitUntilTried()
{
    const auto tried = std::make_shared<std::promise<bool>>(); // shared: it may come after we have gone
    std::future<bool> isRegistered = tried->get_future();
    d->thread.post([tried](RegistrationWorker &worker) { tried->set_value(worker.isRegistered()); });
    return isRegistered.wait_for(d->callLimit) == std::future_status::ready && isRegistered.get();
}
} // namespace CorbaCommon
