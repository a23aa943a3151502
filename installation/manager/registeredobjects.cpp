#include "installation/manager/registeredobjects.h"

#include "installation/cco/orbaccess.h"

#include "coresupport/trace.h"

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/registeredobjects";

} // namespace

RegisteredObjects::RegisteredObjects(CCO::IF_CCO_c_ptr service, const std::string &folder,
                                     std::chrono::milliseconds limit)
    : folder("CCO/LocalSystem/LocalSubSystem/CentralServices/" + folder),
      service(withCallLimit<CCO::IF_CCO_c>(service, limit))
{
}

std::optional<RegisteredObjects::Objects> RegisteredObjects::find(const Filter &isWanted)
{
    try {
        auto found = ask(isWanted);
        noteAnswer(true, "");
        return found;
    } catch (const CORBA::Exception &error) {
        noteAnswer(false, error._name());
        return {};
    }
}

void RegisteredObjects::unregister(const std::string &name, CORBA::Object_ptr object)
{
    try {
        const CORBA::Object_var registered = resolve(folder + name);
        if (!CORBA::is_nil(registered) && registered->_is_equivalent(object))
            CORBA::Object_var(service->Unregister((folder + name).c_str(), 0));
    } catch (const CORBA::NO_PERMISSION &) {
        // It lives at another address: the name stays until it is gone.
    } catch (const CORBA::Exception &error) {
        noteAnswer(false, error._name());
    }
}

RegisteredObjects::Objects RegisteredObjects::ask(const Filter &isWanted) const
{
    Objects found;
    const CCO::seqString_var names = service->ResolveValues(folder.c_str(), CCO::rtThisServiceOnly);
    for (CORBA::ULong position = 0; position < names->length(); ++position) {
        const std::string name = static_cast<const char *>(names.in()[position]);
        if (!isWanted(name))
            continue;
        const CORBA::Object_var object = resolve(folder + name);
        if (!CORBA::is_nil(object))
            found.emplace(name, object);
    }
    return found;
}

CORBA::Object_ptr RegisteredObjects::resolve(const std::string &path) const
{
    try {
        return service->Resolve(path.c_str(), CCO::rtThisServiceOnly);
    } catch (const CCO::IF_CCO_c_Naming::InvalidType &) { // somebody has put values there
        return CORBA::Object::_nil();
    }
}

void RegisteredObjects::noteAnswer(bool now, const char *reason)
{
    if (answers == now)
        return;
    answers = now;
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return now ? QStringLiteral("the central object service answers again")
                   : QStringLiteral("the central object service does not answer: %1").arg(QLatin1String(reason));
    });
}

} // namespace installation
