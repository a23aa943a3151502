#pragma once

#include <omniORB4/CORBA.h>

#include <QString>

#include <type_traits>

/// What a call threw, while it is being handled. Both null: neither a user's nor a system exception.
struct RemoteFailure {
    const CORBA::UserException *user = nullptr;
    const CORBA::SystemException *system = nullptr;

    /// Whether the other side may have done what was asked for. An exception that it has declared is a refusal.
    bool mayHaveTakenEffect() const;
};

/// The result of @p call, or what @p onFailure, given a RemoteFailure, makes of an exception. Every exception ends here.
template <typename Call, typename OnFailure>
std::invoke_result_t<Call> callOr(const Call &call, const OnFailure &onFailure) noexcept
{
    try {
        return call();
    } catch (const CORBA::UserException &e) {
        return onFailure(RemoteFailure{.user = &e});
    } catch (const CORBA::SystemException &e) {
        return onFailure(RemoteFailure{.system = &e});
    } catch (...) {
        return onFailure(RemoteFailure{});
    }
}

/// How a call of somebody else's operation ended.
struct RemoteOutcome {
    enum class Kind {
        Done,
        NotRegistered,    ///< CosNaming::NamingContext::NotFound
        Transient,        ///< CORBA::TRANSIENT
        ConnectionLost,   ///< CORBA::COMM_FAILURE: the other side may have acted, or not
        NotExisting,      ///< CORBA::OBJECT_NOT_EXIST
        SystemException,  ///< any other of the ORB
        ManagerException, ///< exKRV
        Unknown,
    };

    bool isDone() const { return kind == Kind::Done; }

    Kind kind = Kind::Done;
    QString text{};  ///< the name of the ORB's exception, or the manager's words
    int refusal = 0; ///< the manager's number, with ManagerException
};

/// Tells exceptions apart.
RemoteOutcome outcomeOf(const RemoteFailure &failure) noexcept;

/// Makes a call that may fail remotely.
template <typename Call> RemoteOutcome remoteCall(const Call &call) noexcept
{
    const auto made = [&] {
        call();
        return RemoteOutcome();
    };
    return callOr(made, outcomeOf);
}
