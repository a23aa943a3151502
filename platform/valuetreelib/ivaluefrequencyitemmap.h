#pragma once

#include "valuetreelib/ihaschangelogvaluetemplate.h"

namespace values
{
/// A keyed map whose keys are numbers that the map allots itself.
class IValueFrequencyItemMap : public valueitemmap::IHasChangeLogValueTemplate<unsigned int>
{
protected:
    ~IValueFrequencyItemMap() = default;
};
} // namespace values
