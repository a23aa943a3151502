#pragma once

#include "coresupport/coresupport_export.h"

namespace Ulma
{
/// Marks a class that its library may drive by timers. It has no operations, since the derived classes publish the
/// order of theirs.
class CORESUPPORT_EXPORT IHasTimerCallback
{
public:
    virtual ~IHasTimerCallback() = default;
};
} // namespace Ulma
