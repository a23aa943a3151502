#pragma once

#include "installation/calls/activation.h"

#include <omniORB4/callHandle.h>

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace installation
{

/// The objects of one service that others can call, and the calls that they are answering. A copy stands for the same
/// service.
///
/// A service ends by refuseCalls() and waitForCalls(): then no servant is left, and nothing that a call has used is held
/// by a thread of the ORB.
/// Thread: any.
class ServedObjects
{
public:
    /// Long enough for every call that keeps the limit of its caller.
    static constexpr std::chrono::milliseconds usualPatience{15'000};

    /// @p poa must let its user choose the keys.
    explicit ServedObjects(PortableServer::POA_ptr poa);

    /// Makes a servant of these arguments, which others can call while the answer lives.
    /// @throws PortableServer::POA::ObjectAlreadyActive when the key is taken, CORBA::OBJECT_NOT_EXIST after
    /// refuseCalls().
    template <typename Servant, typename... Arguments>
    std::shared_ptr<Activation> serve(const std::string &key, Arguments &&...arguments) const
    {
        return activate(key, make<Servant>(key, std::forward<Arguments>(arguments)...));
    }
    /// Makes a servant as serve() does, for who goes on to use it: it lives at least as long as its activation.
    template <typename Servant, typename... Arguments>
    Servant *make(const std::string &key, Arguments &&...arguments) const
    {
        return new Counted<Servant>(ledger, key, std::forward<Arguments>(arguments)...);
    }
    /// Lets others call what make() has made, as serve() does; takes over @p servant.
    std::shared_ptr<Activation> activate(const std::string &key, PortableServer::Servant servant) const;

    /// Every new call raises `CORBA::OBJECT_NOT_EXIST`, and nothing is served any more.
    void refuseCalls() const;
    /// Waits until all calls are answered and all servants destroyed. False, with a trace that names the calls, when that
    /// takes longer than @p patience. Not to be called by a call.
    bool waitForCalls(std::chrono::milliseconds patience = usualPatience) const;

private:
    class Ledger;

    /// The entry of one servant in the ledger, from before its construction until after its destruction.
    class Entry
    {
    public:
        Entry(std::shared_ptr<Ledger> ledger, const std::string &key);
        ~Entry();
        Entry(const Entry &) = delete;

        /// @throws CORBA::OBJECT_NOT_EXIST when calls are refused.
        void begin(const char *operation);
        void end(const char *operation);

    private:
        const std::shared_ptr<Ledger> ledger;
    };

    class Call
    {
    public:
        Call(Entry &entry, const char *operation) : entry(entry), operation(operation) { entry.begin(operation); }
        ~Call() { entry.end(operation); }
        Call(const Call &) = delete;

    private:
        Entry &entry;
        const char *const operation;
    };

    // A base, so that it outlives the members of the servant.
    template <typename Servant> class Counted : private Entry, public Servant
    {
    public:
        template <typename... Arguments>
        Counted(std::shared_ptr<Ledger> ledger, const std::string &key, Arguments &&...arguments)
            : Entry(std::move(ledger), key), Servant(std::forward<Arguments>(arguments)...)
        {
        }
        _CORBA_Boolean _dispatch(omniCallHandle &handle) override
        {
            const Call call(*this, handle.operation_name());
            return Servant::_dispatch(handle);
        }
    };

    std::vector<std::string> callsInProgress() const;

    PortableServer::POA_var poa;
    std::shared_ptr<Ledger> ledger;
};

} // namespace installation
