#pragma once

#include "idl/cco.hh"

#include <string>
#include <vector>

namespace installation
{

/// The caller owns the result.
CCO::seqString *toSequence(const std::vector<std::string> &texts);
std::vector<std::string> fromSequence(const CCO::seqString &sequence);

} // namespace installation
