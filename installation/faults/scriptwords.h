#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace installation::faults
{

/// A word of a script's line, or a text in quotation marks without these.
struct ScriptWord {
    std::string text;
    bool isQuoted = false;
};

/// The words of a line up to its comment. In a quoted text, \" and \\ stand for the characters themselves.
/// @throws std::invalid_argument with the reason when the line is no UTF-8, holds control characters, or a text in
/// quotation marks has no end.
std::vector<ScriptWord> scriptWords(std::string_view line);

} // namespace installation::faults
