#pragma once

#include "objectmodel/engine/access.h"

namespace KORVE_XML::engine {

/// Remembers the version that a document names; a document older than the class is read into an emptied object.
void takeVersion(const Self &self, IRGObject &object, const QString &version);

} // namespace KORVE_XML::engine
