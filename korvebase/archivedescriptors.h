#pragma once

#include "korvebase/korvebase_export.h"

#include "valuetreelib/valuedescriptor.h"

#include <array>

namespace korve
{

/// The nine values, all of the group "/Archive", that make up the command interface of an archive service in the tree.
/// Thread: main.
KORVEBASE_EXPORT const std::array<values::ValueDescriptor, 9> &archiveDescriptors();

} // namespace korve
