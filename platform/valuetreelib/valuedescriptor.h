#pragma once

#include "valuetreelib/selitemdesc.h"

#include <vector>

namespace values
{
class ValueBase;

/// The static description of a value: what it is called, of which class it is, and what it holds at first.
class VALUETREELIB_EXPORT ValueDescriptor
{
public:
    /// @p group is the path of the node that the value belongs to. Borrows @p prototype, an instance of the value's
    /// class, for its own life.
    ValueDescriptor(const QString &name, const QString &group, const ValueBase *prototype, const QString &defaultText,
                    const QString &furtherText);
    /// Copies @p itemCount items from @p items.
    ValueDescriptor(const QString &name, const QString &group, const ValueBase *prototype, const SelItemDesc *items,
                    int itemCount, const QString &defaultText, const QString &furtherText);

    const QString &name() const { return valueName; }
    const QString &group() const { return groupPath; }
    const ValueBase *prototype() const { return instance; }
    const std::vector<SelItemDesc> &selectionItems() const { return items; }
    const QString &defaultText() const { return initialText; }
    const QString &furtherText() const { return additionalText; }

private:
    QString valueName;
    QString groupPath;
    const ValueBase *instance;
    std::vector<SelItemDesc> items;
    QString initialText;
    QString additionalText;
};
} // namespace values
