#pragma once

#include <QStringList>
#include <QStringView>

#include <span>
#include <string_view>

namespace KORVE_XML::engine
{

/// The literals of one enumeration; a literal's position is its number. All literals are ASCII.
class Enumeration
{
public:
    using Literals = std::span<const std::string_view>;

    constexpr Enumeration(Literals literals, const QStringList &(*names)()) : literals(literals), list(names) {}

    /// The same list as texts; made once, shared by all callers.
    const QStringList &names() const { return list(); }
    bool contains(int value) const { return value >= 0 && value < int(literals.size()); }
    /// The literal of @p value, or a null string outside of the list.
    QString toName(int value) const { return contains(value) ? names().at(value) : QString(); }
    /// The literal as it goes over the wire, or null data outside of the list.
    std::string_view literal(int value) const { return contains(value) ? literals[value] : std::string_view(); }
    /// The first literal equal to @p name, or -1.
    int toValue(QStringView name) const;
    int toValue(std::string_view utf8) const;

private:
    Literals literals;
    const QStringList &(*list)();
};

QStringList toStringList(Enumeration::Literals literals);

/// The texts of the table @p literals, built when first asked for.
template <const auto &literals> const QStringList &namesOf()
{
    static const QStringList names = toStringList(literals);
    return names;
}

} // namespace KORVE_XML::engine
