#pragma once

#include <string>

namespace programs
{

/// Why @p word, which was typed, is no number of seconds from @p least to @p most; empty when it is one.
///
/// It is for the check of a parser: the parser's own check of a range lets "nan" through.
std::string complaintAboutSeconds(const std::string &word, double least, double most);

} // namespace programs
