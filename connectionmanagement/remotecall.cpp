#include "connectionmanagement/remotecall.h"

#include "idl/korvemanager.hh"

#include <omniORB4/Naming.hh>

using Kind = RemoteOutcome::Kind;

namespace
{
RemoteOutcome outcomeOfRefusal(const CORBA::UserException *exception)
{
    if (CosNaming::NamingContext::NotFound::_downcast(exception))
        return {.kind = Kind::NotRegistered};
    if (const auto *refusal = TQ_KRV::IF_KRV_c_KRV::exKRV::_downcast(exception))
        return {.kind = Kind::ManagerException, .text = QString::fromUtf8(refusal->text.in()), .refusal = refusal->kind};
    return {.kind = Kind::Unknown};
}

Kind kindOf(const CORBA::SystemException *exception)
{
    if (CORBA::TRANSIENT::_downcast(exception))
        return Kind::Transient;
    if (CORBA::COMM_FAILURE::_downcast(exception))
        return Kind::ConnectionLost;
    if (CORBA::OBJECT_NOT_EXIST::_downcast(exception))
        return Kind::NotExisting;
    return Kind::SystemException;
}
} // namespace

bool RemoteFailure::mayHaveTakenEffect() const
{
    return system ? system->completed() != CORBA::COMPLETED_NO : !user;
}

RemoteOutcome outcomeOf(const RemoteFailure &failure) noexcept
{
    if (failure.user)
        return outcomeOfRefusal(failure.user);
    if (failure.system)
        return {.kind = kindOf(failure.system), .text = QLatin1String(failure.system->_name())};
    return {.kind = Kind::Unknown};
}
