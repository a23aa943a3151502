#pragma once

/// Keyed maps: items that know their key, and what every map shows of itself.
namespace valueitemmap
{
/// An item of a keyed map, which finds its place by its own key.
template <typename Key> class IKeyItemTemplate
{
public:
    virtual ~IKeyItemTemplate() = default;
    virtual Key GetKey() const = 0;
};
} // namespace valueitemmap
