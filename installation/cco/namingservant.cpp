#include "installation/cco/namingservant.h"

#include "installation/cco/orbaccess.h"
#include "installation/cco/textsequence.h"

#include "orbconnection/incomingconnections.h"
#include "orbconnection/refusednames.h"

#include <cstring>
#include <iomanip>
#include <random>
#include <sstream>

using CorbaCommon::callerAddress;

namespace installation
{

namespace
{

constexpr std::size_t maximumNameLength = 1000;
constexpr CORBA::ULong maximumInterests = 100;
constexpr std::size_t maximumReferenceBytes = 16384;

/// What a client holds of its callback.
class RegistrationServant : public POA_CCO::CBRegistration
{
public:
    RegistrationServant(std::shared_ptr<CentralObjectParts> parts, std::string key)
        : parts(std::move(parts)), key(std::move(key))
    {
    }
    void unregister() override { parts->callbacks.remove(key); }

private:
    const std::shared_ptr<CentralObjectParts> parts;
    const std::string key;
};

/// A key that no earlier run has handed out: an old reference must not end somebody else's registration.
std::string uniquePrefix()
{
    std::random_device random;
    std::ostringstream text;
    text << "CCORegistration-" << std::hex << std::setfill('0');
    for (int i = 0; i < 4; ++i)
        text << std::setw(8) << random();
    return text.str() + "-";
}

void refuseRedundancy(CORBA::ULong type)
{
    if (type != 0)
        throw CCO::IF_CCO_c_Naming::RedundancyTypeNotSupported();
}

[[noreturn]] void refuseParameter()
{
    throw CORBA::BAD_PARAM(0, CORBA::COMPLETED_NO);
}

CallbackQueue::Interests interestsIn(const CCO::seqInterest &sequence)
{
    if (sequence.length() > maximumInterests)
        refuseParameter();
    CallbackQueue::Interests interests;
    for (CORBA::ULong i = 0; i < sequence.length(); ++i) {
        const auto path = parseNamePath(sequence[i].name.in());
        if (std::strlen(sequence[i].name.in()) > maximumNameLength)
            refuseParameter();
        interests.push_back({sequence[i].event, path ? path->name : sequence[i].name.in()});
    }
    return interests;
}

char *available(const std::string &name)
{
    if (name.empty())
        throw CCO::IF_CCO_c::NameNotAvailable();
    return CORBA::string_dup(name.c_str());
}

CORBA::Boolean available(std::optional<bool> answer)
{
    if (!answer)
        throw CCO::IF_CCO_c::NameNotAvailable();
    return *answer;
}

} // namespace

NamingServant::NamingServant(std::shared_ptr<CentralObjectParts> parts, ServedObjects objects)
    : parts(std::move(parts)), objects(std::move(objects)), registrationPrefix(uniquePrefix())
{
}

void NamingServant::Register(const char *arg1, CORBA::Object_ptr arg2, CORBA::ULong arg3)
{
    refuseRedundancy(arg3);
    if (CORBA::is_nil(arg2))
        throw CCO::IF_CCO_c_Naming::InvalidObject();
    parts->registrar.put(ownName(arg1), CORBA::Object_var(CORBA::Object::_duplicate(arg2)), callerAddress());
}

void NamingServant::RegisterValues(const char *arg1, const CCO::seqString &arg2, CORBA::ULong arg3)
{
    refuseRedundancy(arg3);
    parts->registrar.put(ownName(arg1), fromSequence(arg2), callerAddress());
}

CORBA::Object_ptr NamingServant::Unregister(const char *arg1, CORBA::ULong arg2)
{
    refuseRedundancy(arg2);
    return parts->registrar.takeObject(ownName(arg1), callerAddress());
}

void NamingServant::UnregisterValues(const char *arg1, CORBA::ULong arg2)
{
    refuseRedundancy(arg2);
    parts->registrar.takeValues(ownName(arg1), callerAddress());
}

CORBA::Object_ptr NamingServant::Resolve(const char *path, CCO::eResolveType arg2)
{
    const auto parsed = parseNamePath(path);
    if (!parsed)
        return CORBA::Object::_nil();
    if (!parts->directory.isOwnSubsystem(parsed->subsystem))
        return arg2 == CCO::rtInstallation ? parts->peers.resolve(*parsed) : CORBA::Object::_nil();
    auto entry = parts->registry.find(parsed->name);
    if (!entry)
        return CORBA::Object::_nil();
    if (auto *object = std::get_if<CORBA::Object_var>(&entry->content))
        return object->_retn();
    throw CCO::IF_CCO_c_Naming::InvalidType();
}

CCO::seqString *NamingServant::ResolveValues(const char *path, CCO::eResolveType arg2)
{
    const auto parsed = parseNamePath(path);
    if (!parsed)
        return toSequence({});
    if (!parts->directory.isOwnSubsystem(parsed->subsystem))
        return toSequence(arg2 == CCO::rtInstallation ? parts->peers.resolveValues(*parsed)
                                                      : std::vector<std::string>());
    return toSequence(isFolder(path) ? parts->registry.namesBelow(parsed->name) : ownValues(parsed->name));
}

char *NamingServant::GetSystemName()
{
    return available(parts->configuration.systemName);
}

char *NamingServant::GetSubSystemName()
{
    return available(parts->configuration.subsystemName);
}

char *NamingServant::GetWorkstationName()
{
    return available(parts->configuration.workstationName);
}

CCO::seqString *NamingServant::GetSubSystems()
{
    return toSequence(parts->directory.subsystems());
}

CCO::seqString *NamingServant::GetWorkstations(const char *arg1)
{
    return toSequence(parts->directory.workstations(arg1));
}

CCO::seqString *NamingServant::GetSystemWorkstations()
{
    return toSequence(parts->configuration.systemWorkstations);
}

CORBA::Boolean NamingServant::IsLocalHostASystemWorkstation()
{
    return parts->directory.isOnSystemWorkstation();
}

CORBA::Boolean NamingServant::IsRemoteCCOIndicated(const char *arg1)
{
    return available(parts->directory.isRemoteServiceThere(arg1));
}

CORBA::Boolean NamingServant::IsWorkstationIndicated(const char *arg1, const char *arg2)
{
    return available(parts->directory.isWorkstationThere(arg1, arg2));
}

CCO::CBRegistration_ptr NamingServant::register_callback(CCO::Callback_ptr arg1, const CCO::seqInterest &arg2)
{
    if (CORBA::is_nil(arg1) || bytesOf(arg1) > maximumReferenceBytes)
        refuseParameter();
    CallbackQueue::Interests interests = interestsIn(arg2);
    const std::string key = nextRegistrationKey();
    const auto registration = objects.serve<RegistrationServant>(key, parts, key);
    const CORBA::Object_var reference = registration->reference();
    parts->callbacks.add(key, arg1, std::move(interests), registration, callerAddress());
    return CCO::CBRegistration::_narrow(reference);
}

CCO::seqString *NamingServant::GetWorkStationsFromCCOConfig(const char *arg1)
{
    return toSequence(parts->directory.configuredWorkstations(arg1));
}

std::string NamingServant::ownName(const char *path) const
{
    const auto parsed = parseNamePath(path);
    if (!parsed || !parts->directory.isOwnSubsystem(parsed->subsystem) || parsed->name.empty() ||
        parsed->name.size() > maximumNameLength || isFolder(parsed->name) ||
        parsed->name.starts_with(CorbaCommon::refusedNames))
        refuseParameter();
    return parsed->name;
}

std::vector<std::string> NamingServant::ownValues(const std::string &name) const
{
    const auto entry = parts->registry.find(name);
    const auto *values = entry ? std::get_if<Registry::Values>(&entry->content) : nullptr;
    return values ? *values : std::vector<std::string>();
}

std::string NamingServant::nextRegistrationKey()
{
    return registrationPrefix + std::to_string(++registrationCount);
}

} // namespace installation
