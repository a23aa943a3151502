#pragma once

/// Keyed maps: items that know their key, and what every map shows of itself.
namespace valueitemmap
{
template <typename Key> class IKeyItemTemplate
{
public:
    virtual ~IKeyItemTemplate() = default;
    virtual Key GetKey() const = 0;
};
} // namespace valueitemmap
