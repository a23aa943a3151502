#include "objectmodel/engine/version.h"

#include "objectmodel/engine/object.h"

namespace KORVE_XML::engine
{

void takeVersion(const Self &self, IRGObject &object, const QString &version)
{
    const VersionInfo &info = *self.type.facts.version;
    info.loaded(recordOf(self)) = version;
    if (info.current.toFloat() > version.toFloat())
        resetToDefault(self, object);
}

} // namespace KORVE_XML::engine
