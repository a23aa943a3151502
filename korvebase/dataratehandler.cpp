#include "korvebase/dataratehandler.h"

#include "objectmodel/supporteddatarates.h"

#include "coresupport/trace.h"
#include "objectbase/exceptions.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace KorveCommon
{

namespace
{

using KORVE_XML::SupportedDataRate;
using KORVE_XML::SupportedDataRates;

constexpr char sourceName[] = "korvebase/dataratehandler";

constexpr quint16 shortSampleBytes = 4;
constexpr quint16 longSampleBytes = 8;

quint16 sampleBytes(const SupportedDataRate &entry)
{
    return entry.GetSampleSize() == SupportedDataRate::SampleSize_short ? shortSampleBytes : longSampleBytes;
}

quint64 cutToInteger(double value)
{
    constexpr double beyond = 18446744073709551616.0;
    return value < beyond ? static_cast<quint64>(value) : std::numeric_limits<quint64>::max();
}

/// How far @p offered exceeds @p wanted, or nothing if it does not suffice.
std::optional<quint64> surplus(quint64 offered, quint64 wanted)
{
    return wanted <= offered ? std::optional(offered - wanted) : std::nullopt;
}

/// The class of the entry whose surplus is least, the first of equal ones; invalid if no entry suffices.
template <class SurplusOf>
DataRateHandler::DataRate tightest(const DataRateHandler::DataRateMap &rates, const SurplusOf &surplusOf)
{
    DataRateHandler::DataRate best = KORVE_XML::KorveChannelParameter().GetInvalidDataRate();
    std::optional<quint64> least;
    for (auto entry = rates.cbegin(); entry != rates.cend(); ++entry) {
        const std::optional<quint64> measure = surplusOf(entry.value());
        if (measure && (!least || *measure < *least)) {
            least = measure;
            best = entry.key();
        }
    }
    return best;
}

} // namespace

DataRateHandler::DataRateHandler(QObject *parent) : QObject(parent) {}

DataRateHandler::DataRateHandler(const DataRateMap &rates, QObject *parent) : QObject(parent), supported(rates) {}

DataRateHandler::DataRateHandler(const SupportedDataRates &rates, QObject *parent) : QObject(parent)
{
    setSupportedDataRates(rates);
}

void DataRateHandler::setSupportedDataRates(const SupportedDataRates &rates)
{
    supported.clear();
    if (!rates.IsSupportedDataRateSet())
        return;
    try {
        for (const SupportedDataRate &entry : rates.GetSupportedDataRate())
            supported.insert(static_cast<DataRate>(entry.GetDataRate()), entry);
    } catch (const REPORTGENERATOR::RGException &failure) {
        // contract: what cannot be read ends the list; the classes before it stay
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("DataRateHandler::setSupportedDataRates: RGException: %1:%2")
                .arg(failure.GetKind(), failure.GetMessage());
        });
    }
}

void DataRateHandler::setSupportedDataRates(const DataRateMap &rates)
{
    supported = rates;
}

bool DataRateHandler::supportsSampleRate(quint64 sampleRate, quint16 sampleSize) const
{
    return std::any_of(supported.cbegin(), supported.cend(), [&](const SupportedDataRate &entry) {
        return convertSampleRate(sampleRate, sampleSize, entry) <= entry.GetSampleRate();
    });
}

bool DataRateHandler::supportsThroughput(quint64 throughput) const
{
    return std::any_of(supported.cbegin(), supported.cend(),
                       [&](const SupportedDataRate &entry) { return throughput <= entry.GetThroughput(); });
}

DataRateHandler::DataRate DataRateHandler::dataRateClassForSampleRate(quint64 sampleRate, quint16 sampleSize) const
{
    return tightest(supported, [&](const SupportedDataRate &entry) {
        return surplus(entry.GetSampleRate(), convertSampleRate(sampleRate, sampleSize, entry));
    });
}

DataRateHandler::DataRate DataRateHandler::dataRateClassForThroughput(quint64 throughput) const
{
    return tightest(supported,
                    [&](const SupportedDataRate &entry) { return surplus(entry.GetThroughput(), throughput); });
}

DataRateHandler::DataRate DataRateHandler::highestDataRateClass(const DataRate &fallback, bool bySampleRate) const
{
    DataRate best = fallback;
    quint64 greatest = 0;
    for (auto entry = supported.cbegin(); entry != supported.cend(); ++entry) {
        const SupportedDataRate &rate = entry.value();
        const quint64 measure =
            bySampleRate ? convertSampleRate(rate.GetSampleRate(), shortSampleBytes, rate) : rate.GetThroughput();
        if (measure > greatest) {
            greatest = measure;
            best = entry.key();
        }
    }
    return best;
}

/// Brings a rate of samples of @p sampleSize bytes to the sample size of @p entry.
quint64 DataRateHandler::convertSampleRate(quint64 sampleRate, quint16 sampleSize, const SupportedDataRate &entry)
{
    const quint16 bytes = sampleBytes(entry);
    if (bytes == sampleSize)
        return sampleRate;
    if (bytes == shortSampleBytes && sampleSize == longSampleBytes)
        return sampleRate * 2;
    if (bytes == longSampleBytes && sampleSize == shortSampleBytes)
        return sampleRate >> 1;
    return cutToInteger(static_cast<double>(sampleRate) * sampleSize / bytes);
}

} // namespace KorveCommon
