#pragma once

#include <QString>

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

/// Tells the exception apart that is being handled.
RemoteOutcome currentRemoteFailure() noexcept;

/// Makes a call that may fail remotely. Every exception ends here.
template <typename Call> RemoteOutcome remoteCall(const Call &call) noexcept
{
    try {
        call();
        return {};
    } catch (...) {
        return currentRemoteFailure();
    }
}
