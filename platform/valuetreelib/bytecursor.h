#pragma once

#include <cstddef>
#include <utility>

namespace values
{
/// What is left to read of foreign bytes. `&cursor.position, cursor.end` fit `Ulma::fromCharStream` and
/// `Ulma::EatSemicolon`.
struct ByteCursor {
    const char *position = nullptr;
    const char *end = nullptr;

    std::size_t left() const { return static_cast<std::size_t>(end - position); }
    bool isAtEnd() const { return position == end; }
    /// Passes the next @p count bytes and yields them, or null, and stays where it is, when fewer are left.
    const char *take(std::size_t count) { return count <= left() ? std::exchange(position, position + count) : nullptr; }
};
} // namespace values
