#pragma once

#include <algorithm>
#include <iterator>
#include <span>

namespace korve
{

/// One row of a table of messages: a number, and what a person reads, in the language of the source.
struct ErrorText {
    unsigned long id;
    const char *text;
};

/// Whether the rows ascend by their numbers, each number once; findText() needs it.
constexpr bool isInOrder(std::span<const ErrorText> table)
{
    return std::ranges::adjacent_find(table, std::ranges::greater_equal{}, &ErrorText::id) == table.end();
}

/// The text of @p id; null when there is none.
constexpr const char *findText(std::span<const ErrorText> table, unsigned long id)
{
    const auto row = std::ranges::lower_bound(table, id, {}, &ErrorText::id);
    return row != table.end() && row->id == id ? row->text : nullptr;
}

} // namespace korve
