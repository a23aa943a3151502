#pragma once

#include <cstddef>
#include <vector>

namespace values
{
class ValueBase;
template <typename Code, typename Key> class ChangeLogTemplate;
} // namespace values

namespace valueitemmap
{
/// A map with a log of its changes, seen without its item type.
template <typename Key> class IHasChangeLogValueTemplate
{
public:
    // contract: slot order
    virtual std::size_t Size() const = 0;
    virtual const values::ChangeLogTemplate<char, Key> &GetChangeLog() const = 0;
    virtual std::vector<Key> IndexVector() const = 0;
    virtual bool Contains(Key key) const = 0;
    virtual values::ValueBase *GetValueBase() = 0;

protected:
    ~IHasChangeLogValueTemplate() = default;
};
} // namespace valueitemmap
