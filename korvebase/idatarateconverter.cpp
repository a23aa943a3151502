#include "korvebase/idatarateconverter.h"

#include <limits>

namespace KorveCommon
{

IDataRateConverter::IDataRateConverter() = default;
IDataRateConverter::IDataRateConverter(const IDataRateConverter &) = default;
IDataRateConverter &IDataRateConverter::operator=(const IDataRateConverter &) = default;
IDataRateConverter::~IDataRateConverter() = default;

quint64 IDataRateConverter::getDataRate(quint64 sampleRate) const
{
    return getDataRate(sampleRate, getSampleSize(sampleRate));
}

quint64 IDataRateConverter::getDataRate(quint64 sampleRate, quint16 sampleSize) const
{
    const quint64 converted = getSampleRate(sampleRate, sampleSize);
    return converted == std::numeric_limits<quint64>::max() ? converted : converted * sampleSize;
}

void IDataRateConverter::reserved() const {}

} // namespace KorveCommon
