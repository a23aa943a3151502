#pragma once

#include "coresupport/iobserver.h"

namespace values
{
/// A numeric value seen through doubles, whatever it stores; 64-bit integers lose their lowest bits.
class IValueNumeric
{
public:
    /// A number that the stored type cannot take is traced and changes nothing.
    virtual void setNumericValue(double number, IObserver *originator) = 0;
    virtual double numericValue() const = 0;
    virtual double numericMin() const = 0;
    virtual double numericMax() const = 0;
    virtual double numericStep() const = 0;

protected:
    ~IValueNumeric() = default;
};
} // namespace values
