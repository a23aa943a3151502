#include "korvebase/datarateclass.h"

#include <QMultiMap>
#include <QSet>

#include <array>
#include <limits>

namespace korve::channel
{

namespace
{

using KORVE_XML::KorveChannelParameter;
using DataRate = DataRateClass::DataRate;

constexpr std::array bandwidthsHz{
    20'000.0,      // HF_20k
    4'000'000.0,   // HF_4M
    20'000.0,      // VUHF_200k; contract: not what its name says
    20'000'000.0,  // VUHF_20M
    8'000'000.0,   // HF_8M
    12'000'000.0,  // HF_12M
    40'000'000.0,  // VUHF_40M
    60'000'000.0,  // VUHF_60M
    80'000'000.0,  // VUHF_80M
    0.0,           // RESULT_DATA; contract: has none
    300'000.0,     // VUHF_300k
    10'000'000.0,  // VUHF_10M
    125'000'000.0, // VUHF_125M
    250'000'000.0, // VUHF_250M
    500'000'000.0, // VUHF_500M
    1'000'000.0,   // VUHF_1M
};
static_assert(bandwidthsHz.size() == KorveChannelParameter::VUHF_1M + 1, "one bandwidth per class, by code");

/// Asked for names and validity only, which touch nothing in it: threads may share it.
const KorveChannelParameter &vocabulary()
{
    static const KorveChannelParameter parameter;
    return parameter;
}

const QStringList &names()
{
    static const QStringList list = KorveChannelParameter::GetDataRates();
    return list;
}

const QStringList &displayNames()
{
    static const QStringList list = KorveChannelParameter::GetGUIDataRates();
    return list;
}

/// Ascending. Of equal bandwidths the class that was inserted last comes first, as QMultiMap has it.
const QMultiMap<double, DataRate> &classesByBandwidth()
{
    static const QMultiMap<double, DataRate> classes = [] {
        QMultiMap<double, DataRate> all;
        for (const DataRate rate : DataRateClass::values())
            all.insert(DataRateClass::toBandwidth(rate), rate);
        return all;
    }();
    return classes;
}

/// A stretch of bandwidths whose ends belong to it, also by rounding.
class Range
{
public:
    /// The stretch up to @p nextUpper that follows this one; the first begins at 0.
    void moveUpTo(double nextUpper)
    {
        lower = lower > upper ? 0.0 : upper;
        upper = nextUpper;
    }
    bool contains(double value) const { return !isAbove(lower, value) && !isAbove(value, upper); }

private:
    static bool isAbove(double a, double b) { return a > b && !qFuzzyCompare(a, b); }

    double lower = std::numeric_limits<double>::max();
    double upper = 0.0;
};

} // namespace

DataRate DataRateClass::fromString(const QString &name, bool *ok)
{
    bool ownFlag = false;
    bool &known = ok ? *ok : ownFlag;
    const DataRate rate = vocabulary().NameToDataRate(name);
    known = vocabulary().IsValidDataRate(rate);
    return known ? rate : values().at(0);
}

QString DataRateClass::toString(DataRate rate)
{
    return vocabulary().IsValidDataRate(rate) ? names().at(rate) : QString();
}

QString DataRateClass::toDisplayString(DataRate rate)
{
    return vocabulary().IsValidDataRate(rate) ? displayNames().at(rate) : QString();
}

const QList<DataRate> &DataRateClass::values()
{
    static const QList<DataRate> all = [] {
        QList<DataRate> rates;
        for (const QString &name : names())
            rates.append(vocabulary().NameToDataRate(name));
        return rates;
    }();
    return all;
}

DataRate DataRateClass::forBandwidth(double bandwidthHz, const QList<DataRate> &allowed)
{
    const QSet<DataRate> candidates(allowed.cbegin(), allowed.cend());
    DataRate result = vocabulary().GetInvalidDataRate();
    Range range;
    const auto &classes = classesByBandwidth();
    for (auto entry = classes.cbegin(); entry != classes.cend(); ++entry) {
        if (!candidates.contains(entry.value()))
            continue;
        range.moveUpTo(entry.key());
        result = entry.value();
        if (range.contains(bandwidthHz))
            break;
    }
    return result;
}

double DataRateClass::toBandwidth(DataRate rate)
{
    return vocabulary().IsValidDataRate(rate) ? bandwidthsHz[rate] : 0.0;
}

} // namespace korve::channel
