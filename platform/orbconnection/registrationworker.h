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

    explicit RegistrationWorker(const ServiceRegistration::Timing &timing);

    void start();
    void offer(const QString &name, const Offer &offer);
    void withdraw(const QString &name);
    void withdrawAll();
    /// The last call for a name succeeded.
    bool isRegistered() const { return !failing; }

private:
    bool registerOne(const QString &name, const Offer &offer);
    void registerAll();
    bool unregisterOne(const QString &name, const Offer &offer);
    template <typename Call> bool succeeds(const QString &name, const Call &call);

    const ServiceRegistration::Timing timing;
    CCO::IF_CCO_c_var service;
    QMap<QString, Offer> offers;
    QTimer repetition;
    bool failing = false;
};
} // namespace CorbaCommon
