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
    void bind(quint32 id, values::ValueBase *value) { notEntered.push_back({id, value}); }
    /// Takes out the value at @p path.
    void removeValue(const QString &path);
    /// Takes out the values below @p path, at any depth.
    void removeBelow(const QString &path);
    void clear();

    /// Null, when there is no such value, or no longer.
    values::ValueBase *value(quint32 id) const { return tables().valuesById.value(id); }
    /// 0, when the value has none.
    quint32 id(const values::ValueBase *value) const { return tables().idsByValue.value(value); }
    /// All paths, in order.
    std::vector<QString> paths() const;
    std::vector<values::ValueBase *> valuesBelow(const QString &path) const;

private:
    using Places = std::map<QString, values::ValueBase *>; // by path
    struct Binding {
        quint32 id;
        values::ValueBase *value;
    };
    struct Tables {
        NumberTable<quint32, values::ValueBase *> valuesById;
        NumberTable<const values::ValueBase *, quint32> idsByValue; // the last of each
        QMultiHash<const values::ValueBase *, quint32> earlierIds; // rarely any
    };

    Tables &tables() const
    {
        if (!notEntered.empty())
            enter();
        return entered;
    }
    void enter() const;
    Places &sorted() const;
    Places::iterator remove(Places::iterator place);

    // A snapshot binds very many values and asks for none: they are entered together for who asks by number, and put in
    // order for who asks by path.
    mutable std::vector<Binding> notEntered;
    mutable Tables entered;
    mutable std::vector<values::ValueBase *> notInPlace;
    mutable Places places;
};
} // namespace mirror
