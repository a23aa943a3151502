#include "installation/faults/roles.h"

#include <algorithm>
#include <array>

namespace installation::faults
{

namespace
{

struct ModuleRole {
    std::string_view module;
    std::string_view role;
};

constexpr std::array moduleRoles{
    ModuleRole{"CCO", "cco"},
    ModuleRole{"TQ_KRV", "manager"},
    ModuleRole{"TQ_KORVE_IT", "manager"}, // it receives what recorders tell
    ModuleRole{"VALUETREE", "manager"},
    ModuleRole{"TQ_KORVE", "recorder"},
    ModuleRole{"LLDCmodule", "recorder"},
    ModuleRole{"KORVE_INSTALLATION", "recorder"},
};

} // namespace

bool isRole(std::string_view word)
{
    return std::any_of(moduleRoles.begin(), moduleRoles.end(), [&](const ModuleRole &row) { return row.role == word; });
}

std::string_view roleOfModule(std::string_view module)
{
    const auto found = std::find_if(moduleRoles.begin(), moduleRoles.end(),
                                    [&](const ModuleRole &row) { return row.module == module; });
    return found == moduleRoles.end() ? std::string_view() : found->role;
}

std::string_view roleOfInterface(std::string_view repositoryId)
{
    constexpr std::string_view prefix = "IDL:";
    if (!repositoryId.starts_with(prefix))
        return {};
    repositoryId.remove_prefix(prefix.size());
    return roleOfModule(repositoryId.substr(0, repositoryId.find('/')));
}

} // namespace installation::faults
