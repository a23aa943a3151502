#pragma once

#include "idl/cco.hh"
#include "orbconnection/serviceregistration.h"

#include <QMap>
#include <QObject>
#include <QTimer>

namespace CorbaCommon
{
/// Makes the calls of a ServiceRegistration, on the thread that it lives on.
class RegistrationWorker : public QObject
{
    Q_OBJECT
public:
    /// What a name stands for: an object, or else values.
    struct Offer {
        CORBA::Object_var object;
        QStringList values;
    };

    RegistrationWorker(const ServiceRegistration::Timing &timing, ServiceRegistration::Listener listener);

    void start();
    void offer(const QString &name, const Offer &offer);
    void withdraw(const QString &name);
    void withdrawAll();
    /// All names are.
    bool isRegistered() const { return state == State::Registered; }

private:
    using State = ServiceRegistration::State;

    void registerAll();
    bool isTooEarly();
    /// The first name that is not registered and its state; otherwise Registered.
    State tryAll(QString &name, QString &reason);
    State registerOne(const QString &name, QString &reason) const;
    /// False when the service does not answer.
    bool unregisterOne(const QString &name);
    void unregisterAll();
    void unregister(const char *path, const Offer &offer) const;
    void note(State now, const QString &name, const QString &reason);
    QString describe(State now, const QString &name, const QString &reason) const;

    const ServiceRegistration::Timing timing;
    const ServiceRegistration::Listener listener;
    CCO::IF_CCO_c_var service;
    QMap<QString, Offer> offers;
    QTimer repetition;
    State state = State::Untried;
    QString refused; ///< the name that somebody else holds, or held before the service failed; empty when there is none
    bool isBack = false; ///< the service, since the last try
};
} // namespace CorbaCommon
