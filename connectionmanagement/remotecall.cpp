#include "connectionmanagement/remotecall.h"

#include "idl/korvemanager.hh"

#include <omniORB4/Naming.hh>

using Kind = RemoteOutcome::Kind;

RemoteOutcome currentRemoteFailure() noexcept
{
    try {
        throw;
    } catch (const CosNaming::NamingContext::NotFound &) {
        return {.kind = Kind::NotRegistered};
    } catch (const TQ_KRV::IF_KRV_c_KRV::exKRV &e) {
        return {.kind = Kind::ManagerException, .text = QString::fromUtf8(e.text.in()), .refusal = e.kind};
    } catch (const CORBA::TRANSIENT &e) {
        return {.kind = Kind::Transient, .text = QLatin1String(e._name())};
    } catch (const CORBA::COMM_FAILURE &e) {
        return {.kind = Kind::ConnectionLost, .text = QLatin1String(e._name())};
    } catch (const CORBA::OBJECT_NOT_EXIST &e) {
        return {.kind = Kind::NotExisting, .text = QLatin1String(e._name())};
    } catch (const CORBA::SystemException &e) {
        return {.kind = Kind::SystemException, .text = QLatin1String(e._name())};
    } catch (...) {
        return {.kind = Kind::Unknown};
    }
}
