#pragma once

#include "coresupport/iobserver.h"

namespace values
{
/// The state of a value; only the content of a valid one is believed.
enum TValueState : int {
    ValueStateValid = 0,
    ValueStateDeleted = 1, ///< gone from the tree
    ValueStateSeeded = 2,  ///< filled with a first content by whoever created it
    ValueStateConnectionLost = 3,
};
/// Codes up to this one may be given a meaning by a program; what is beyond is refused.
constexpr int greatestState = 15;

/// A value's content stays, but its limits, or the items to select from, changed.
constexpr auto ChangeCodeLimits = static_cast<TChangeCode>(4);
constexpr auto ChangeCodeSelectionItems = static_cast<TChangeCode>(5);
/// A node was given another descriptor.
constexpr auto ChangeCodeDescriptor = static_cast<TChangeCode>(6);

/// Tells the classes of values apart, also between processes. Further classes take numbers from 100 on.
using ValueType = int;
constexpr ValueType ValueTypeText = 1;
constexpr ValueType ValueTypeBool = 2;
constexpr ValueType ValueTypeInt = 3;
constexpr ValueType ValueTypeUnsigned = 4;
constexpr ValueType ValueTypeInt64 = 5;
constexpr ValueType ValueTypeDouble = 6;
constexpr ValueType ValueTypeNumericInt = 10;
constexpr ValueType ValueTypeNumericInt64 = 11;
constexpr ValueType ValueTypeNumericDouble = 12;
constexpr ValueType ValueTypeSelection = 20;
constexpr ValueType ValueTypeFrequencyItemMap = 30;
} // namespace values
