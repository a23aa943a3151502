#pragma once

#include "valuetreelib/itemholder.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/valuebase.h"

namespace values
{
/// Holds one value of class T, and null once that is gone from the tree. Copies hold for themselves.
template <typename T> class ValuePtr : public ItemHolder
{
public:
    T *Get() const { return static_cast<T *>(static_cast<ValueBase *>(heldItem())); }
    T *operator->() const { return Get(); }
    T &operator*() const { return *Get(); }
    explicit operator bool() const { return heldItem(); }

    void attach(T *value) { attachItem(value); }

    /// Lets go first; then holds the value at @p path of the process's tree, if there is one of class T.
    bool GetFromTree(const QString &path)
    {
        Reset();
        attach(dynamic_cast<T *>(Tree::Instance().findValue(path)));
        return Get();
    }

    /// As GetFromTree(), else adds a new T there. True when this call has created the value, which the caller then seeds.
    /// False, holding nothing, where a value of another class stands, and when an observer removes the new one at once.
    bool getOrCreate(const QString &path)
    {
        if (GetFromTree(path))
            return false;
        const int leaf = path.lastIndexOf(u'/') + 1;
        auto value = std::make_unique<T>();
        value->SetName(path.mid(leaf), nullptr);
        attach(value.get()); // before it is added: an observer may remove it at once
        return Tree::Instance().addValue(path.left(leaf), std::move(value)) && Get();
    }
};
} // namespace values
