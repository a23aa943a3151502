#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace installation
{

/// A path of the central object service, taken apart.
struct NamePath {
    std::string subsystem; ///< empty: the local one
    std::string name;      ///< relative to the central services of the subsystem; may end in "/"
};

/// "CCO/LocalSystem/LocalSubSystem/NAME", "CCO/LocalSystem/SubSystems/SUBSYSTEM/NAME" or a bare NAME of the local
/// subsystem. "LocalSubSystem" is the local one in either place, and "CentralServices/" before a name means nothing.
/// Without result: a path into the local system that leads to no subsystem.
std::optional<NamePath> parseNamePath(std::string_view path);

/// The path under which another service finds @p path.
std::string fullPath(const NamePath &path);

/// Names of subsystems and workstations come from several sources and are compared without case.
bool sameName(std::string_view one, std::string_view other);

/// A path or name that stands for all names below it.
bool isFolder(std::string_view path);

} // namespace installation
