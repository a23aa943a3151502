#pragma once

#include "korvebase/korvebase_export.h"

#include "objectmodel/korvechannelparameter.h"
#include "objectmodel/supporteddatarate.h"

#include <QMap>
#include <QObject>

namespace KORVE_XML
{
class SupportedDataRates;
}

namespace KorveCommon
{

/// The data-rate classes that one recorder supports, and which of them suits a sample rate or a throughput.
///
/// Sample rates are per second, sample sizes in bytes, throughputs in the unit of SupportedDataRate.
/// Thread: one at a time.  Errors: where nothing suits, the class is invalid; unreadable entries are traced.
class KORVEBASE_EXPORT DataRateHandler : public QObject
{
    Q_OBJECT
public:
    using DataRate = KORVE_XML::KorveChannelParameter::DataRate;
    using DataRateMap = QMap<DataRate, KORVE_XML::SupportedDataRate>;

    explicit DataRateHandler(QObject *parent = nullptr);
    explicit DataRateHandler(const DataRateMap &rates, QObject *parent = nullptr);
    explicit DataRateHandler(const KORVE_XML::SupportedDataRates &rates, QObject *parent = nullptr);

    /// Replaces all classes, also by none if @p rates has no list; of two entries of one class the later counts.
    void setSupportedDataRates(const KORVE_XML::SupportedDataRates &rates);
    void setSupportedDataRates(const DataRateMap &rates);

    const DataRateMap &supportedDataRates() const { return supported; }
    bool supportsSampleRate(quint64 sampleRate, quint16 sampleSize) const;
    bool supportsThroughput(quint64 throughput) const;
    /// The class that exceeds the sample rate least; of equal ones that with the lower code.
    DataRate dataRateClassForSampleRate(quint64 sampleRate, quint16 sampleSize) const;
    /// The class with the least sufficient throughput; of equal ones that with the lower code.
    DataRate dataRateClassForThroughput(quint64 throughput) const;
    /// The class with the greatest sample rate, at 4 bytes per sample, or else throughput; @p fallback if all are 0.
    DataRate highestDataRateClass(const DataRate &fallback, bool bySampleRate) const;

private:
    static quint64 convertSampleRate(quint64 sampleRate, quint16 sampleSize, const KORVE_XML::SupportedDataRate &entry);

    DataRateMap supported;
};

} // namespace KorveCommon
