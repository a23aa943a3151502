#pragma once

#include "objectmodel/engine/access.h"

#include <QLatin1String>

namespace KORVE_XML::engine
{

/// The name of the attribute that carries the version.
inline constexpr QLatin1String versionAttribute("Version", 7);

/// Remembers the version that a document names; a document older than the class is read into an emptied object.
void takeVersion(const Self &self, IRGObject &object, const QString &version);

} // namespace KORVE_XML::engine
