#pragma once

#include <string>
#include <vector>

/// The sentences of tests/data/errortexts, made without the code that is tested.
namespace sentences
{

/// All flows by the names that scripts use, such as "StartReplay", and the two contexts of toolbars.
const std::vector<std::string> &flows();
/// What the code that is tested says of @p number in that flow; as sentence().
std::string read(const std::string &flow, const std::string &number, const std::string &text);
/// The numbers that the flow has sentences for, and "other".
std::vector<std::string> numbersOf(const std::string &flow);
/// What is read of @p number in that flow, whether it has a sentence or gets that of all others; @p text stands where
/// the sentence speaks of something particular.
std::string sentence(const std::string &flow, const std::string &number, const std::string &text);

} // namespace sentences
