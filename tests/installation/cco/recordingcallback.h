#pragma once

#include "idl/cco.hh"

#include <condition_variable>
#include <mutex>
#include <ostream>
#include <string>
#include <vector>

/// What a callback was told.
struct ToldEvent {
    CORBA::ULong event;
    std::string name;

    bool operator==(const ToldEvent &) const = default;
};

inline std::ostream &operator<<(std::ostream &out, const ToldEvent &told)
{
    return out << (told.event == CCO::eventAvailable ? "available " : "gone ") << told.name;
}

/// A callback that writes down what it is told. It can be made to block, and to end its own registration.
class RecordingCallback : public POA_CCO::Callback
{
public:
    /// Active for as long as it lives: the test owns one through a Servant_var, and calls retire() at its end.
    static RecordingCallback *make();

    void notify(CORBA::ULong event, const char *name) override;

    CCO::Callback_ptr reference() { return _this(); }
    std::vector<ToldEvent> told() const;
    /// notify() does not return until release().
    void block();
    void release();
    /// Ends @p registration from within the next notify().
    void unregisterWhenTold(CCO::CBRegistration_ptr registration);
    /// No longer reachable.
    void retire();

private:
    mutable std::mutex mutex;
    std::condition_variable released;
    std::vector<ToldEvent> events;
    bool blocked = false;
    CCO::CBRegistration_var registrationToEnd;
};

using CallbackOwner = PortableServer::Servant_var<RecordingCallback>;
