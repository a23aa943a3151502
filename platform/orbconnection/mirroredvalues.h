#pragma once

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
    values::ValueBase *value(quint32 id) const { return valuesById.value(id, nullptr); }
    /// 0, when the value has none.
    quint32 id(const values::ValueBase *value) const;
    /// All paths, in order.
    std::vector<QString> paths() const;
    std::vector<values::ValueBase *> valuesBelow(const QString &path) const;

private:
    struct Entry {
        values::ValueBase *value;
        std::vector<quint32> ids;
    };
    using Entries = std::map<QString, Entry>; // by path

    Entries::iterator remove(Entries::iterator position);

    Entries entries;
    QHash<quint32, values::ValueBase *> valuesById;
    QHash<const values::ValueBase *, quint32> idsByValue;
};
} // namespace mirror
