#pragma once

#include "orbconnection/serviceregistration.h"

#include <QObject>

#include <deque>
#include <exception>
#include <mutex>
#include <utility>

namespace ThreadingHelper
{
class ThreadSwitchingHandler;
}

namespace installation
{

/// One service of this process, which exists while its names at the central object service are its own.
///
/// While another who lives holds one of them it stands by: nothing of it exists, so that all calls are refused, and it
/// asks for the names as ServiceRegistration does. When they are to be had, it begins. A service that finds its names
/// held by another, say after its process stood still, stands by, too. Without a central object service nobody can tell:
/// then it stays as it is, and begins with a beginning.
/// Prints "ready TITLE" when it answers, and "standing by TITLE: REASON". Thread: main; blocks while the service begins
/// and ends.
class NamedService : public QObject
{
    Q_OBJECT
public:
    struct Plan {
        QString title;                 ///< "ROLE HOST:PORT"
        QString name;                  ///< of the main object
        CORBA::Object_var reference{}; ///< to the main object, whether it exists or not
        /// Registers all names, whether what they stand for exists or not.
        std::function<void(CorbaCommon::ServiceRegistration &names)> claim;
        /// Makes the service and registers its names. It ends when the last owner lets it go.
        std::function<std::shared_ptr<void>(CorbaCommon::ServiceRegistration &names)> make;
    };
    /// Hears what make() has thrown, when the service was to begin after it had stood by.
    using FailureListener = std::function<void(std::exception_ptr)>;

    /// Begins, or stands by. Throws what make() throws.
    NamedService(Plan plan, FailureListener listener);
    /// The names go before what they stand for.
    ~NamedService() override;

private:
    using State = CorbaCommon::ServiceRegistration::State;

    bool isHeldByAnother() const;
    void note(State now, const QString &why);
    void followNews();
    void follow(State now, const QString &why);
    void ask();
    void begin();
    void takeOver();
    void standBy(const QString &why);

    const Plan plan;
    const FailureListener listener;
    bool isStandingBy = false;
    std::shared_ptr<void> service; ///< nothing while it stands by, or does not know yet
    const std::shared_ptr<ThreadingHelper::ThreadSwitchingHandler> mainThread;
    std::mutex mutex; // guards the news, which the thread of the names brings
    std::deque<std::pair<State, QString>> news; ///< of the names, not followed yet
    CorbaCommon::ServiceRegistration names;
};

} // namespace installation
