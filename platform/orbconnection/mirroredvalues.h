#pragma once

#include "orbconnection/numbertable.h"

#include <QHash>
#include <QString>

#include <map>
#include <vector>

namespace values
{
class ValueBase;
}

namespace mirror
{
/// The values that two mirrors know by number. Borrows them: who uses this takes out those that go.
class MirroredValues
{
public:
    /// A value may get several ids, the last of which it is told by.
    void bind(quint32 id, values::ValueBase *value);
    /// Takes out the value at @p path.
    void removeValue(const QString &path);
    /// Takes out the values below @p path, at any depth.
    void removeBelow(const QString &path);
    void clear();

    /// Null, when there is no such value, or no longer.
    values::ValueBase *value(quint32 id) const { return valuesById.value(id); }
    /// 0, when the value has none.
    quint32 id(const values::ValueBase *value) const { return idsByValue.value(value); }
    /// All paths, in order.
    std::vector<QString> paths() const;
    std::vector<values::ValueBase *> valuesBelow(const QString &path) const;

private:
    using Places = std::map<QString, values::ValueBase *>; // by path

    Places &sorted() const;
    Places::iterator remove(Places::iterator place);

    NumberTable<quint32, values::ValueBase *> valuesById;
    NumberTable<const values::ValueBase *, quint32> idsByValue; // the last of each
    QMultiHash<const values::ValueBase *, quint32> earlierIds; // rarely any
    // A snapshot binds very many values and asks for none by path: they are put in order for who asks.
    mutable Places places;
    mutable std::vector<values::ValueBase *> notInPlace;
};
} // namespace mirror
