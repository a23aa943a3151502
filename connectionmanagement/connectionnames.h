#pragma once

#include "korvebase/literal.h"

#include <QString>

/// Names that only connections need; the paths of the value tree stand in korvebase/valuetreepaths.h.
namespace korve::name
{
inline constexpr QLatin1String localSubSystem = literal("LocalSubSystem");
inline constexpr QLatin1String subSystems = literal("SubSystems/");
inline constexpr QLatin1String reregistrationNode = literal("/ReregisterCorba");

/// The name under which the tics of @p subsystem are kept: the local subsystem may come without one.
inline QString keyOf(const QString &subsystem)
{
    return subsystem.isEmpty() ? QString(localSubSystem) : subsystem;
}

inline QString withoutTrailingSlash(const QString &path)
{
    return path.endsWith(QLatin1Char('/')) ? path.chopped(1) : path;
}
} // namespace korve::name
