#include "tests/support/objectmodel/objectclass.h"

namespace modeltest
{

std::unique_ptr<REPORTGENERATOR::IRGObject> ObjectClass::filled() const
{
    std::unique_ptr<REPORTGENERATOR::IRGObject> object = make();
    fill(*object);
    return object;
}

const std::vector<ObjectClass> &objectClasses()
{
    static const std::vector<ObjectClass> all = [] {
        std::vector<ObjectClass> classes;
        for (const auto family :
             {recordClasses, channelClasses, configurationClasses, resourceClasses, deviceClasses, filterClasses})
            for (ObjectClass &each : family())
                classes.push_back(std::move(each));
        return classes;
    }();
    return all;
}

const ObjectClass &objectClass(const QString &name)
{
    for (const ObjectClass &each : objectClasses())
        if (each.name == name)
            return each;
    qFatal("no access to the class %s", qPrintable(name));
}

} // namespace modeltest
