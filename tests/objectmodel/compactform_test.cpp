#include "objectbase/logger.h"
#include "objectmodel/admin.h"
#include "objectmodel/booleanfilter.h"
#include "objectmodel/dataformatlimit.h"
#include "objectmodel/enumfilter.h"
#include "objectmodel/forceddeletion.h"
#include "objectmodel/korve_bite.h"
#include "objectmodel/korve_cfgautodeletion.h"
#include "objectmodel/korve_recorddata.h"
#include "objectmodel/massstoragestatus.h"
#include "objectmodel/numberfilter.h"
#include "objectmodel/pelinconnection.h"
#include "objectmodel/recordingdata.h"
#include "objectmodel/su_configuration.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"

#include <gtest/gtest.h>

#include <memory>

using namespace KORVE_XML;
using modeltest::bytes;
using modeltest::compactForm;
using modeltest::hex;
using modeltest::readCompact;

namespace
{

template <class T> T read(const char *digits)
{
    T object;
    readCompact(object, bytes(digits));
    return object;
}

// What follows the presence bytes of a record without content.
const char *const emptyRecordFields = "ffffffff ffffffff"                                  // RecordID, RecordName
                                      "0000000000000000 0000000000000000 0000000000000000" // Size, StartTime, StopTime
                                      "ff ff"                                              // RecordStatus, DataFormat
                                      "0000000000000000 0000000000000000 0000000000000000" // loop size, positions
                                      "ff";                                                // DataRate

} // namespace

TEST(CompactOutput, IsPresenceBitsAndFields)
{
    PelinInfo info;
    info.SetPelinID("P1");
    EXPECT_EQ(hex(compactForm(info)), hex(bytes("01 00000004 0050 0031")));
    info.SetTimestamp(18446744073709551615u);
    EXPECT_EQ(hex(compactForm(info)), hex(bytes("03 00000004 0050 0031 ffffffffffffffff")));
}

TEST(CompactOutput, AlwaysHoldsMandatoryMembersAndNeverValidates)
{
    EXPECT_EQ(hex(compactForm(PelinInfo())), hex(bytes("00 ffffffff")));
    EXPECT_EQ(hex(compactForm(KORVE_RecordData())), hex(bytes("000000") + bytes(emptyRecordFields)));
    EXPECT_EQ(hex(compactForm(KORVE_CfgAutoDeletion())), hex(bytes("00 0000000000000001 0000000000000003")));
    EXPECT_EQ(hex(compactForm(RecordingData())),
              hex(bytes("00 ffffffff ffffffff ffffffff ffffffff 0000000000000000 0000000000000000 ff"
                        "00 ff ffffffff 0000000000000000 0000000000000000")));
}

TEST(CompactOutput, PutsALeadingAttributeLast)
{
    KORVE_RecordData record;
    record.SetFinished(true);
    EXPECT_EQ(hex(compactForm(record)), hex(bytes("000020") + bytes(emptyRecordFields) + bytes("01")));
    NumberFilter filter;
    filter.SetComparator(NumberFilter::NotEqual);
    filter.SetFilterValue("7");
    filter.SetType(NumberFilter::Time);
    EXPECT_EQ(hex(compactForm(filter)), hex(bytes("07 05 00000002 0037 03")));
    filter.ResetComparator();
    EXPECT_EQ(hex(compactForm(filter)), hex(bytes("06 ff 00000002 0037 03")));
}

TEST(CompactOutput, CountsTheBitsFromTheLowEndOfEachByte)
{
    KORVE_RecordData record;
    record.SetRecordID("");
    record.SetStopTime(1);
    record.SetLinkedRecord(QVector<LinkedRecord>());
    // RecordID is bit 0, StopTime bit 6, LinkedRecord bit 20.
    EXPECT_EQ(hex(compactForm(record)),
              hex(bytes("410010 00000000 ffffffff 0000000000000000 0000000000000000 0000000000000001 ff ff"
                        "0000000000000000 0000000000000000 0000000000000000 ff 00000000")));
}

TEST(CompactOutput, HoldsADoubleExactly)
{
    MassStorageStatus status;
    status.SetTotalCapacity(-1);
    status.SetFreeCapacity(1);
    status.SetFreeCapacityInPercent(0.1);
    const QByteArray form = compactForm(status);
    EXPECT_EQ(hex(form), hex(bytes("07 ffffffffffffffff 0000000000000001 3fb999999999999a")));
    MassStorageStatus back;
    readCompact(back, form);
    EXPECT_EQ(back.GetFreeCapacityInPercent(), 0.1);
    EXPECT_TRUE(back == status);
}

TEST(CompactOutput, HoldsADateByItsOwnOperator)
{
    const QDateTime time(QDate(2020, 2, 29), QTime(23, 59, 58, 7), Qt::UTC);
    KORVE_Bite bite;
    bite.SetResultState(KORVE_Bite::FAILED);
    bite.SetTime(time);
    // Result and time are bits 0 and 2; Julian day 2458909, 86398007 ms, time spec 1 for UTC.
    EXPECT_EQ(hex(compactForm(bite)), hex(bytes("05 01 000000000025851d 05265437 01")));
    KORVE_Bite back;
    readCompact(back, compactForm(bite));
    EXPECT_EQ(back.GetTime(), time);
    EXPECT_EQ(back.GetTime().timeSpec(), Qt::UTC);
}

TEST(CompactOutput, HoldsBooleansAndEnumerationsInOneByte)
{
    BooleanFilter filter;
    filter.SetTestValue(false);
    EXPECT_EQ(hex(compactForm(filter)), hex(bytes("01 00")));
    ForcedDeletion deletion;
    EXPECT_EQ(hex(compactForm(deletion)), hex(bytes("00")));
    deletion.SetProcessingState(ForcedDeletion::Invalid);
    EXPECT_EQ(hex(compactForm(deletion)), hex(bytes("01 06")));
    deletion.SetValidate(false);
    deletion.SetProcessingState(deletion.GetInvalidProcessingState());
    EXPECT_EQ(hex(compactForm(deletion)), hex(bytes("01 ff")));
}

TEST(CompactOutput, HoldsIntegersOfEveryWidthInEightBytes)
{
    PelinConnection connection;
    connection.SetHost("");
    connection.SetPort(-2);
    EXPECT_EQ(hex(compactForm(connection)), hex(bytes("03 00000000 fffffffffffffffe")));
    EnumFilter filter;
    filter.SetEnumValue(QVector<qint32>{-1, 2});
    EXPECT_EQ(hex(compactForm(filter)), hex(bytes("01 00000002 ffffffffffffffff 0000000000000002")));
}

TEST(CompactOutput, HoldsAListByCountWhenItsBitIsSet)
{
    SU_Configuration configuration;
    EXPECT_EQ(hex(compactForm(configuration)), hex(bytes("00")));
    configuration.GetSU_Device();
    EXPECT_EQ(hex(compactForm(configuration)), hex(bytes("01 00000000")));
    SU_Device device;
    device.SetGUID("g");
    configuration.GetSU_Device().append(device);
    EXPECT_EQ(hex(compactForm(configuration)), hex(bytes("01 00000001 01 00000002 0067 ffffffff ffffffff")));
    DataFormatLimit limit;
    limit.SetExpirationTime(1);
    limit.AppendDataFormat(DataFormatLimit::DETECTOR_THRESHOLD);
    EXPECT_EQ(hex(compactForm(limit)), hex(bytes("03 0000000000000001 00000001 1c")));
}

TEST(CompactOutput, NestsTheCompactFormOfAnObject)
{
    Admin admin;
    admin.GetCopySection().SetEndSection(3);
    EXPECT_EQ(hex(compactForm(admin)), hex(bytes("0100 02 0000000000000003")));
}

TEST(CompactInput, TakesTheBitsAsTheyAre)
{
    const auto info = read<PelinInfo>("02 00000002 0050 0000000000000007");
    EXPECT_FALSE(info.IsPelinIDSet());
    EXPECT_TRUE(info.IsTimestampSet());
    EXPECT_EQ(info.GetPelinID().toStdString(), "P");
    EXPECT_EQ(info.GetTimestamp(), 7u);
}

TEST(CompactInput, ClearsTheBitsThatItDoesNotHave)
{
    PelinInfo info;
    info.SetPelinID("old");
    info.SetTimestamp(1);
    readCompact(info, bytes("01 00000002 0050"));
    EXPECT_EQ(info.GetPelinID().toStdString(), "P");
    EXPECT_FALSE(info.IsTimestampSet());
}

TEST(CompactInput, GoesPastTheSetters)
{
    const auto deletion = read<ForcedDeletion>("01 80");
    EXPECT_TRUE(deletion.GetValidate());
    EXPECT_EQ(deletion.GetProcessingState(), -128);
    EXPECT_TRUE(read<PelinInfo>("01 ffffffff").GetPelinID().isNull());
    EXPECT_EQ(read<KORVE_CfgAutoDeletion>("01 0000000000000000 0000000000000003").GetIntervall(), 0u);
}

TEST(CompactInput, OfARecordFindsFinishedAtTheEnd)
{
    KORVE_RecordData record;
    readCompact(record, bytes("000020") + bytes(emptyRecordFields) + bytes("00"));
    EXPECT_TRUE(record.IsFinishedSet());
    EXPECT_FALSE(record.GetFinished());
    readCompact(record, bytes("000000") + bytes(emptyRecordFields));
    EXPECT_FALSE(record.IsFinishedSet());
}

TEST(CompactInput, IgnoresBitsBeyondTheLastMember)
{
    const auto info = read<PelinInfo>("fd 00000002 0050");
    EXPECT_TRUE(info.IsPelinIDSet());
    EXPECT_FALSE(info.IsTimestampSet());
    EXPECT_EQ(hex(compactForm(info)), hex(bytes("01 00000002 0050")));
}

TEST(CompactInput, HandsFlagAndLoggerToFreshItems)
{
    const auto logger = std::make_shared<REPORTGENERATOR::Logger>();
    SU_Configuration configuration;
    configuration.SetValidate(false);
    configuration.SetLogger(logger);
    readCompact(configuration, bytes("01 00000001 01 00000002 0067 ffffffff ffffffff"));
    ASSERT_EQ(qAsConst(configuration).GetSU_Device().size(), 1);
    EXPECT_FALSE(qAsConst(configuration).GetSU_Device().at(0).GetValidate());
    EXPECT_EQ(qAsConst(configuration).GetSU_Device().at(0).GetLogger(), logger);
}

TEST(CompactInput, LeavesTheRestOnTheStream)
{
    QDataStream in(bytes("01 00000002 0050 abcd"));
    PelinInfo info;
    info.SetVersionSpecificBinaryWithoutValidation(in);
    quint16 rest = 0;
    in >> rest;
    EXPECT_EQ(rest, 0xabcd);
}

struct DamagedCase {
    const char *name;
    const char *digits;
};

void PrintTo(const DamagedCase &row, std::ostream *out)
{
    *out << row.name;
}

class DamagedCompactForm : public testing::TestWithParam<DamagedCase>
{
};

// It may throw or leave an object with less; it must neither hang nor take more than the bytes can hold.
TEST_P(DamagedCompactForm, EndsWithTheBytes)
{
    const QByteArray form = bytes(GetParam().digits);
    SU_Configuration configuration;
    modeltest::failureOf([&] { readCompact(configuration, form); });
    EXPECT_LE(qAsConst(configuration).GetSU_Device().size(), form.size());
    EnumFilter filter;
    modeltest::failureOf([&] { readCompact(filter, form); });
    EXPECT_LE(qAsConst(filter).GetEnumValue().size(), form.size());
}

INSTANTIATE_TEST_SUITE_P(
    Lists, DamagedCompactForm,
    testing::Values(DamagedCase{"Empty", ""}, DamagedCase{"NoCount", "01"}, DamagedCase{"HalfACount", "01 7fff"},
                    DamagedCase{"HugeCount", "01 7fffffff"}, DamagedCase{"NegativeCount", "01 80000000"},
                    DamagedCase{"CountMinusOne", "01 ffffffff 00"},
                    DamagedCase{"HugeCountAndOneItem", "01 7fffffff 00 ffffffff ffffffff ffffffff"},
                    DamagedCase{"HugeText", "01 00000001 01 7ffffffe 0041"},
                    DamagedCase{"OddText", "01 00000001 01 00000003 004100"}),
    [](const auto &row) { return std::string(row.param.name); });
