#pragma once

#include <span>
#include <string_view>

namespace installation::faults
{

/// What an operation returns, as far as a script can answer in its place.
enum class Result { Number, Truth, Other };

struct Operation {
    std::string_view module; ///< the outermost of its interface
    std::string_view name;
    Result result;
    bool hasOuts; ///< there are parameters that go out
};

/// An exception that has a kind and a text.
struct UserException {
    std::string_view name;
    std::span<const std::string_view> kinds; ///< in their order on the wire
    void (*raise)(unsigned kind, const char *text);
};

/// All that services of an installation serve. An operation stands here once for each module that has one of its name.
std::span<const Operation> allOperations();
std::span<const UserException> allUserExceptions();

} // namespace installation::faults
