#pragma once

#include "valuetreelib/format.h"
#include "valuetreelib/valuecodes.h"

namespace values
{
/// What a value class of stored type T is called, and how its content is written as text unless something else is said.
/// To be specialised for a type of your own.
template <typename T> struct ScalarType;

template <> struct ScalarType<QString> {
    using Format = FormatString<QString>;
    static constexpr ValueType type = ValueTypeText;
    static constexpr char name[] = "Text";
};
template <> struct ScalarType<bool> {
    using Format = FormatBool<bool>;
    static constexpr ValueType type = ValueTypeBool;
    static constexpr char name[] = "Bool";
};
template <> struct ScalarType<int> {
    using Format = FormatInt<int>;
    static constexpr ValueType type = ValueTypeInt, numericType = ValueTypeNumericInt;
    static constexpr char name[] = "Int", numericName[] = "NumericInt";
};
template <> struct ScalarType<unsigned int> {
    using Format = FormatInt<unsigned int>;
    static constexpr ValueType type = ValueTypeUnsigned;
    static constexpr char name[] = "Unsigned";
};
template <> struct ScalarType<qint64> {
    using Format = FormatInt<qint64>;
    static constexpr ValueType type = ValueTypeInt64, numericType = ValueTypeNumericInt64;
    static constexpr char name[] = "Int64", numericName[] = "NumericInt64";
};
template <> struct ScalarType<double> {
    using Format = FormatFloat<double>;
    static constexpr ValueType type = ValueTypeDouble, numericType = ValueTypeNumericDouble;
    static constexpr char name[] = "Double", numericName[] = "NumericDouble";
};
} // namespace values
