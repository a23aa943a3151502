#include "korvebase/corbametadataconverter.h"
#include "korvebase/corbatoclientconverter.h"
#include "korvebase/corbatodeviceconverter.h"

#include "tests/appruntime/capturedtraces.h"
#include "tests/korvebase/datatable.h"

#include <gmock/gmock.h>

#include <QMap>

#include <limits>

namespace
{
using KORVE_XML::KORVE_RecordData;
using testing::ElementsAre;
using testing::IsEmpty;

namespace client = KorveCommon::CorbaToClientConverter;
namespace device = KorveCommon::CorbaToDeviceConverter;
namespace metaData = KorveCommon::CorbaMetaDataConverter;

using Conversion = std::function<qint64(qint64)>;

template <class To, class From> Conversion onNumbers(To (*convert)(From))
{
    return [convert](qint64 number) { return static_cast<qint64>(convert(static_cast<From>(number))); };
}

const QMap<QString, Conversion> conversions{
    {"CorbaToClientConverter::convertDataRateClassFromXml", onNumbers(client::convertDataRateClassFromXml)},
    {"CorbaToClientConverter::convertDataRateClassFromClient", onNumbers(client::convertDataRateClassFromClient)},
    {"CorbaToDeviceConverter::convertDataRateFromXml", onNumbers(device::convertDataRateFromXml)},
    {"CorbaToDeviceConverter::convertDataRateClassFromKorve", onNumbers(device::convertDataRateClassFromKorve)},
    {"CorbaToClientConverter::convertRecordStatusFromXml", onNumbers(client::convertRecordStatusFromXml)},
    {"CorbaToClientConverter::convertRecordStatusFromClient", onNumbers(client::convertRecordStatusFromClient)},
    {"CorbaToDeviceConverter::convertRecordStatusFromKorve", onNumbers(device::convertRecordStatusFromKorve)},
    {"CorbaToClientConverter::convertDataFormatFromXml", onNumbers(client::convertDataFormatFromXml)},
    {"CorbaToClientConverter::convertDataFormatFromClient", onNumbers(client::convertDataFormatFromClient)},
    {"CorbaToDeviceConverter::convertDataFormatFromXml", onNumbers(device::convertDataFormatFromXml)},
    {"CorbaToDeviceConverter::convertDataFormatFromKorve", onNumbers(device::convertDataFormatFromKorve)},
    {"CorbaToClientConverter::convertKorveInterfaceTypeFromXml", onNumbers(client::convertKorveInterfaceTypeFromXml)},
    {"CorbaToClientConverter::convertKorveInterfaceType", onNumbers(client::convertKorveInterfaceType)},
    {"CorbaToClientConverter::convertWindowingModes", onNumbers(client::convertWindowingModes)},
    {"CorbaMetaDataConverter::convertDataRateFromKorve", onNumbers(metaData::convertDataRateFromKorve)},
    {"CorbaMetaDataConverter::convertDataFormatFromKorve", onNumbers(metaData::convertDataFormatFromKorve)},
};

/// One row of conversions.txt.
struct Expectation {
    explicit Expectation(const QStringList &row)
        : function(row.at(0)), first(row.at(1).toInt()), last(row.at(2).toInt()), fallback(row.at(3).toInt()),
          traced(row.at(4))
    {
        for (const QString &pair : row.mid(5))
            known.insert(pair.section('=', 0, 0).toInt(), pair.section('=', 1).toInt());
    }
    std::vector<std::string> tracesFor(int number) const
    {
        if (known.contains(number) || traced.isEmpty())
            return {};
        return {traced.arg(number).toStdString()};
    }
    QString function;
    int first, last, fallback;
    QString traced;
    QMap<int, int> known;
};

TEST(Conversions, AreThoseOfTheTable)
{
    QStringList functions;
    CapturedTraces traces;
    for (const QStringList &row : readTable("conversions.txt")) {
        const Expectation expected(row);
        functions.append(expected.function);
        for (int number = expected.first; number <= expected.last; ++number) {
            SCOPED_TRACE(expected.function.toStdString() + " of " + std::to_string(number));
            EXPECT_EQ(conversions.value(expected.function)(number), expected.known.value(number, expected.fallback));
            EXPECT_EQ(traces.take(), expected.tracesFor(number));
        }
    }
    functions.sort();
    EXPECT_EQ(functions, conversions.keys());
}

TEST(Conversions, AgreeWithTheTableOfClasses)
{
    CapturedTraces quiet(0);
    for (const QStringList &row : readTable("datarateclasses.txt")) {
        const auto rate = static_cast<KORVE_RecordData::DataRate>(row.at(0).toInt());
        const bool passes = row.at(3) != "-";
        EXPECT_EQ(client::convertDataRateClassFromXml(rate), passes ? row.at(3).toInt() : 0);
        EXPECT_EQ(device::convertDataRateFromXml(rate), passes ? row.at(4).toInt() : 0);
        EXPECT_EQ(device::convertDataRateClassFromKorve(device::convertDataRateFromXml(rate)), passes ? rate : 0);
    }
}

TEST(Conversions, TakeTheGreatestNumberThatADeviceCanSend)
{
    constexpr auto greatest = std::numeric_limits<unsigned int>::max();
    CapturedTraces traces;
    EXPECT_EQ(device::convertRecordStatusFromKorve(greatest), KORVE_RecordData::IDLE);
    EXPECT_THAT(traces.take(), ElementsAre("CorbaToDeviceConverter::convertRecordStatusFromKorve : invalid record "
                                           "status 4294967295. Will be using Idle."));
}

TEST(Conversions, TakeTheDevicesLiterals)
{
    EXPECT_EQ(device::convertRecordStatusFromKorve(TQ_KORVE::rsCOPYING), KORVE_RecordData::COPYING);
    EXPECT_EQ(device::convertDataRateClassFromKorve(TQ_KORVE::drVUHF_1M), KORVE_RecordData::VUHF_1M);
    EXPECT_EQ(device::convertDataFormatFromKorve(TQ_KORVE::dfIQBW), KORVE_RecordData::IQBW);
}

TEST(Conversions, AreTheSameWhenNobodyWantsTraces)
{
    CapturedTraces traces(0);
    EXPECT_EQ(client::convertRecordStatusFromXml(static_cast<KORVE_RecordData::RecordStatus>(-1)), TQ_KRV::rsIDLE);
    EXPECT_THAT(traces.take(), IsEmpty());
}

TEST(Conversions, TraceAtTheNormalLevel)
{
    CapturedTraces traces(32);
    device::convertDataFormatFromKorve(24);
    EXPECT_THAT(traces.take(), testing::SizeIs(1));
}

TEST(WindowNames, AreThoseOfTheContract)
{
    const std::vector<std::pair<int, QString>> names{{0, "Rectangle"},
                                                     {1, "Hamming"},
                                                     {2, "Hanning"},
                                                     {3, "Kaiser"},
                                                     {4, "Blackman"},
                                                     {5, "unknown FFT_WINDOWING_MODE"},
                                                     {7, "unknown FFT_WINDOWING_MODE"}};
    for (const auto &[number, name] : names)
        EXPECT_EQ(device::convertWindowingModesToString(static_cast<TQ_KORVE::eFFT_WINDOWING_MODES>(number)), name);
}
} // namespace
