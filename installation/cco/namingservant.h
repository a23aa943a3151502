#pragma once

#include "idl/cco.hh"
#include "installation/calls/servedobjects.h"
#include "installation/cco/centralobjectparts.h"

#include <atomic>
#include <memory>

namespace installation
{

/// Answers the calls of CCO::IF_CCO_c. Only redundancy type 0 is supported.
///
/// A name to register is one of the own subsystem: not empty, not a folder, at most 1000 characters, not one of those
/// that the service itself lists; any other gives CORBA::BAD_PARAM. A name that somebody else holds gives
/// CORBA::NO_PERMISSION, also when it is to be taken away, and one for which there is no room, in all or for its address,
/// CORBA::NO_RESOURCES. Resolving the name of a values entry gives InvalidType. The values of a path that ends in "/" are
/// the names below it, of objects and of values, sorted and relative to it; its subsystem is found as that of any other
/// path.
class NamingServant : public POA_CCO::IF_CCO_c
{
public:
    /// Registrations of callbacks are served among @p objects.
    NamingServant(std::shared_ptr<CentralObjectParts> parts, ServedObjects objects);

    void Register(const char *arg1, CORBA::Object_ptr arg2, CORBA::ULong arg3) override;
    void RegisterValues(const char *arg1, const CCO::seqString &arg2, CORBA::ULong arg3) override;
    CORBA::Object_ptr Unregister(const char *arg1, CORBA::ULong arg2) override;
    void UnregisterValues(const char *arg1, CORBA::ULong arg2) override;
    CORBA::Object_ptr Resolve(const char *path, CCO::eResolveType arg2) override;
    CCO::seqString *ResolveValues(const char *path, CCO::eResolveType arg2) override;

    char *GetSystemName() override;
    char *GetSubSystemName() override;
    char *GetWorkstationName() override;
    CCO::seqString *GetSubSystems() override;
    CCO::seqString *GetWorkstations(const char *arg1) override;
    CCO::seqString *GetSystemWorkstations() override;
    CORBA::Boolean IsLocalHostASystemWorkstation() override;
    CORBA::Boolean IsRemoteCCOIndicated(const char *arg1) override;
    CORBA::Boolean IsWorkstationIndicated(const char *arg1, const char *arg2) override;
    CCO::CBRegistration_ptr register_callback(CCO::Callback_ptr arg1, const CCO::seqInterest &arg2) override;
    CCO::seqString *GetWorkStationsFromCCOConfig(const char *arg1) override;

private:
    std::string ownName(const char *path) const;
    std::vector<std::string> ownValues(const std::string &name) const;
    std::string nextRegistrationKey();

    const std::shared_ptr<CentralObjectParts> parts;
    const ServedObjects objects;
    const std::string registrationPrefix;
    std::atomic<unsigned> registrationCount = 0;
};

} // namespace installation
