#include "installation/program/namedservice.h"

#include "installation/cco/liveness.h"

#include "appruntime/threadswitchingadministration.h"
#include "orbconnection/orbhandler.h"

#include <QPointer>

#include <iostream>

using CorbaCommon::OrbHandler;
using CorbaCommon::ServiceRegistration;

namespace installation
{

NamedService::NamedService(Plan given, FailureListener listener)
    : plan(std::move(given)), listener(std::move(listener)),
      mainThread(ThreadingHelper::ThreadSwitchingAdministration::CreateThreadSwitchingHandler(
          QStringLiteral("installation/program/namedservice"))),
      names(ServiceRegistration::Timing(), [this](State now, const QString &why) { note(now, why); })
{
    if (isHeldByAnother())
        ask();
    else
        begin();
}

NamedService::~NamedService() = default;

/// A service that does not ask first would begin, and disturb the other one, before it is refused.
bool NamedService::isHeldByAnother() const
{
    constexpr std::chrono::seconds limit{1};
    try {
        const CCO::IF_CCO_c_var service = OrbHandler::Instance().centralService(limit);
        const CORBA::Object_var holder = service->Resolve(plan.name.toUtf8().constData(), CCO::rtThisServiceOnly);
        return !CORBA::is_nil(holder) && !holder->_is_equivalent(plan.reference) &&
               askObject(holder, limit) != Answer::Gone;
    } catch (const CORBA::Exception &) {
        return false; // the registration says what is wrong
    }
}

/// Has the news followed from the event loop, unless ask() does so before. Thread: that of the names.
void NamedService::note(State now, const QString &why)
{
    const std::scoped_lock lock(mutex);
    news.emplace_back(now, why);
    mainThread->post(ThreadingHelper::RunInMainThreadEvent([self = QPointer<NamedService>(this)] {
        if (self)
            self->followNews();
    }));
}

void NamedService::followNews()
{
    std::unique_lock lock(mutex);
    while (!news.empty()) {
        const auto [now, why] = std::move(news.front());
        news.pop_front();
        lock.unlock();
        follow(now, why);
        lock.lock();
    }
}

void NamedService::follow(State now, const QString &why)
{
    if (now == State::Refused && !isStandingBy)
        standBy(why);
    else if (now == State::Registered && !service)
        takeOver();
}

/// What comes of it is followed at once, so that it is said before the next service begins.
void NamedService::ask()
{
    plan.claim(names);
    names.waitUntilTried();
    followNews();
}

void NamedService::begin()
{
    service = plan.make(names);
    isStandingBy = false;
    std::cout << "ready " << plan.title.toStdString() << std::endl;
}

void NamedService::takeOver()
{
    names.unregisterAll(); // who finds a name is to find what it stands for
    try {
        begin();
    } catch (...) {
        listener(std::current_exception());
    }
}

void NamedService::standBy(const QString &why)
{
    isStandingBy = true;
    service.reset();
    std::cout << "standing by " << plan.title.toStdString() << ": " << why.toStdString() << std::endl;
}

} // namespace installation
