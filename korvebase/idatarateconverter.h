#pragma once

#include "korvebase/korvebase_export.h"

#include <QtGlobal>

namespace KorveCommon
{

/// Turns a nominal sample rate into what really flows: another sample rate, bytes per sample, bytes per second.
///
/// Concrete converters belong to the hardware and stand outside this library.
/// Errors: a rate without an answer is all ones (64 bits), also as a data rate.
class KORVEBASE_EXPORT IDataRateConverter
{
public:
    IDataRateConverter();
    IDataRateConverter(const IDataRateConverter &);
    IDataRateConverter &operator=(const IDataRateConverter &);

    // contract: slot order
    virtual ~IDataRateConverter();
    /// In bytes per second, at the sample size that belongs to @p sampleRate.
    virtual quint64 getDataRate(quint64 sampleRate) const;
    /// In bytes per second; @p sampleSize in bytes.
    virtual quint64 getDataRate(quint64 sampleRate, quint16 sampleSize) const;
    virtual quint64 getSampleRate(quint64 sampleRate, quint16 sampleSize) const = 0;
    /// Never called. It keeps the place of an operation that converters from outside may or may not have.
    virtual void reserved() const;
    /// In bytes.
    virtual quint16 getSampleSize(quint64 sampleRate) const = 0;
};

} // namespace KorveCommon
