#pragma once

#include "valuetreelib/valuebase.h"

namespace values
{
/// Makes values of one class.
class VALUETREELIB_EXPORT ValueCreator
{
public:
    virtual ~ValueCreator() = default;
    virtual ValueType type() const = 0;
    virtual QString typeName() const = 0;
    virtual std::unique_ptr<ValueBase> create() const = 0;
};

/// For a class with a default constructor.
template <typename T> class DefaultValueCreator final : public ValueCreator
{
public:
    ValueType type() const override { return T().GetType(); }
    QString typeName() const override { return T().GetTypeName(); }
    std::unique_ptr<ValueBase> create() const override { return std::make_unique<T>(); }
};
} // namespace values
