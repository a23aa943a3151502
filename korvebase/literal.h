#pragma once

#include <QLatin1String>

namespace korve
{

/// A text constant: no work at start, no copy where it is joined to a QString.
template <int size> constexpr QLatin1String literal(const char (&text)[size])
{
    return QLatin1String(text, size - 1);
}

} // namespace korve
