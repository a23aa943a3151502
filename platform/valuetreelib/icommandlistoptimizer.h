#pragma once

#include "valuetreelib/valuebase.h"

namespace values
{
/// Merges or drops commands of one value that wait to be sent; for classes whose commands do not simply replace one
/// another.
class ICommandListOptimizer
{
public:
    virtual ~ICommandListOptimizer() = default;
    virtual void optimize(ValueBase::CommandList &commands) = 0;
};
} // namespace values
