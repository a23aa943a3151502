#pragma once

#include "valuetreelib/valuecreator.h"

#include <map>

namespace values
{
/// Makes values of the class that a peer announces. Knows the classes of this library from the start.
///
/// Thread: main; never blocks.
class VALUETREELIB_EXPORT ValueFactory
{
public:
    static ValueFactory &Instance();

    /// A creator of the same type number that was there before is replaced.
    void RegisterType(std::unique_ptr<ValueCreator> creator);
    void UnregisterType(ValueType type);

    /// A new value without a name; null when the type is not known.
    std::unique_ptr<ValueBase> create(ValueType type) const;
    std::unique_ptr<ValueBase> create(const QString &typeName) const;
    /// As above, ready to be added under @p name.
    std::unique_ptr<ValueBase> create(ValueType type, const QString &name) const;

private:
    ValueFactory();

    struct Entry {
        QString typeName;
        std::unique_ptr<ValueCreator> creator;
    };

    std::map<ValueType, Entry> entries;
};
} // namespace values
