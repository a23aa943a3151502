#pragma once

#include "korvebase/valuenames.h"

#include <QString>

/// Names that only connections need; the others stand in korvebase/valuenames.h and valuetreepaths.h.
namespace korve::name
{
inline constexpr QLatin1String subSystems = literal("SubSystems/");
inline constexpr QLatin1String reregistrationNode = literal("/ReregisterCorba");

/// The name under which the tics of @p subsystem are kept: the local subsystem may come without one.
inline QString keyOf(const QString &subsystem)
{
    return subsystem.isEmpty() ? QString(LocalSubSystem) : subsystem;
}

inline QString withoutTrailingSlash(const QString &path)
{
    return path.endsWith(QLatin1Char('/')) ? path.chopped(1) : path;
}
} // namespace korve::name
