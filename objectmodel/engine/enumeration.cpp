#include "objectmodel/engine/enumeration.h"

#include <algorithm>

namespace KORVE_XML::engine
{

namespace
{

char16_t unit(QChar character)
{
    return character.unicode();
}

char16_t unit(char character)
{
    return static_cast<unsigned char>(character);
}

template <class Text> bool equal(std::string_view literal, const Text &name)
{
    const auto sameUnit = [](auto a, auto b) { return unit(a) == unit(b); };
    // Literals share long beginnings ("VUHF_"): size and last character tell nearly all of them apart.
    return literal.size() == std::size_t(name.size()) && sameUnit(literal.back(), name.back())
        && std::equal(literal.begin(), literal.end(), name.begin(), sameUnit);
}

template <class Text> int find(Enumeration::Literals literals, const Text &name)
{
    if (name.empty())
        return -1;
    const auto matches = [&](std::string_view literal) { return equal(literal, name); };
    const auto found = std::find_if(literals.begin(), literals.end(), matches);
    return found == literals.end() ? -1 : int(found - literals.begin());
}

} // namespace

int Enumeration::toValue(QStringView name) const
{
    return find(literals, name);
}

int Enumeration::toValue(std::string_view utf8) const
{
    return find(literals, utf8);
}

QStringList toStringList(Enumeration::Literals literals)
{
    QStringList names;
    names.reserve(int(literals.size()));
    for (std::string_view literal : literals)
        names.append(QString::fromLatin1(literal.data(), int(literal.size())));
    return names;
}

} // namespace KORVE_XML::engine
