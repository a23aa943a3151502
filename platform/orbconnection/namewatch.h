#pragma once

#include "idl/cco.hh"
#include "orbconnection/centralservicemanager.h"

#include <QTimer>

#include <optional>
#include <string>

namespace CorbaCommon
{
/// Looks at one name of the central object service, again and again, on the thread that it lives on.
class NameWatch : public QObject
{
    Q_OBJECT
public:
    NameWatch(const QString &name, const CentralServiceManager::Timing &timing);
    ~NameWatch() override;

    /// @p callback is asked to be told of the name's changes. Before start().
    void setCallback(CCO::Callback_ptr callback);
    void start();
    /// The service has told of a change, @p gone if the name vanished.
    void told(bool gone);

Q_SIGNALS:
    void si_changed(bool available);

private:
    void look();
    void ensureRegistration();
    std::optional<std::string> whatIsThere();
    void found(const std::string &identity);
    void missed();

    const std::string name;
    const CentralServiceManager::Timing timing;
    QTimer poll;
    CCO::IF_CCO_c_var service;
    CCO::Callback_var callback;
    CCO::CBRegistration_var registration;
    std::string known; ///< identity of what was there last; empty: nothing
    bool wasGone = false;
    int misses = 0;
};
} // namespace CorbaCommon
