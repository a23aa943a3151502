#pragma once

#include <string_view>

namespace installation::faults
{

/// Raises one of the ORB's exceptions; says that nothing was done.
using RaiseSystemException = void (*)();

/// By its name, such as "TRANSIENT"; null when there is none of that name.
RaiseSystemException systemExceptionNamed(std::string_view name);

} // namespace installation::faults
