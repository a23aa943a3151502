#include "valuetreelib/valuedescriptor.h"

namespace values
{
ValueDescriptor::ValueDescriptor(const QString &name, const QString &group, const ValueBase *prototype,
                                 const QString &defaultText, const QString &furtherText)
    : ValueDescriptor(name, group, prototype, nullptr, 0, defaultText, furtherText)
{
}

ValueDescriptor::ValueDescriptor(const QString &name, const QString &group, const ValueBase *prototype,
                                 const SelItemDesc *items, int itemCount, const QString &defaultText,
                                 const QString &furtherText)
    : valueName(name), groupPath(group), instance(prototype), items(items, items + itemCount),
      initialText(defaultText), additionalText(furtherText)
{
}
} // namespace values
