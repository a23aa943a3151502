#include "installation/cco/namepath.h"

#include <algorithm>

namespace installation
{

namespace
{

constexpr std::string_view systemPrefix = "CCO/LocalSystem/";
constexpr std::string_view subsystemsPrefix = "SubSystems/";
constexpr std::string_view localSubsystem = "LocalSubSystem";
constexpr std::string_view servicesPrefix = "CentralServices/";

bool removePrefix(std::string_view &text, std::string_view prefix)
{
    if (!text.starts_with(prefix))
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

/// Takes the first segment off @p text; without result where no "/" ends it.
std::optional<std::string_view> takeSegment(std::string_view &text)
{
    const auto end = text.find('/');
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view segment = text.substr(0, end);
    text.remove_prefix(end + 1);
    return segment;
}

char lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

std::optional<NamePath> parseNamePath(std::string_view path)
{
    NamePath result;
    if (removePrefix(path, systemPrefix)) {
        const bool named = removePrefix(path, subsystemsPrefix);
        const auto segment = takeSegment(path);
        if (!segment || segment->empty() || (!named && *segment != localSubsystem))
            return std::nullopt;
        if (*segment != localSubsystem)
            result.subsystem = *segment;
    }
    removePrefix(path, servicesPrefix);
    result.name = path;
    return result;
}

std::string fullPath(const NamePath &path)
{
    std::string text(systemPrefix);
    text += path.subsystem.empty() ? std::string(localSubsystem) : std::string(subsystemsPrefix) + path.subsystem;
    text += '/';
    text += servicesPrefix;
    return text + path.name;
}

bool sameName(std::string_view one, std::string_view other)
{
    return std::ranges::equal(one, other, {}, lowered, lowered);
}

bool isFolder(std::string_view path)
{
    return path.ends_with('/');
}

} // namespace installation
