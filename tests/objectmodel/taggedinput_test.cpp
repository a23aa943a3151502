#include "objectbase/logger.h"
#include "objectmodel/admin.h"
#include "objectmodel/dataformatlimit.h"
#include "objectmodel/forceddeletion.h"
#include "objectmodel/korve_availabledevice.h"
#include "objectmodel/korve_bite.h"
#include "objectmodel/korve_recorddata.h"
#include "objectmodel/massstoragestatus.h"
#include "objectmodel/pelinconnection.h"
#include "objectmodel/recordattribute.h"
#include "objectmodel/su_configuration.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"

#include <gtest/gtest.h>

#include <QBuffer>

using namespace KORVE_XML;
using modeltest::bytes;
using modeltest::failureOf;
using modeltest::readTagged;
using modeltest::utf8;
using REPORTGENERATOR::Logger;

namespace
{

const char *const pelinIdFrame = "2df731bf 00000006 00000002 5031";
const char *const timestampFrame = "89e47268 00000008 0000000000000005";

template <class T> T read(const QByteArray &payload, bool validate = true)
{
    T object;
    object.SetValidate(validate);
    readTagged(object, payload);
    return object;
}

const char *const lengthError = "BinaryParsingException: PelinInfo::SetBinary(...): Length error occurred during "
                                "processing of binary representation";

} // namespace

TEST(TaggedInput, ReadsTheMembersInAnyOrder)
{
    const auto info = read<PelinInfo>(bytes(timestampFrame) + bytes(pelinIdFrame));
    EXPECT_EQ(info.GetPelinID().toStdString(), "P1");
    EXPECT_EQ(info.GetTimestamp(), 5u);
    EXPECT_TRUE(info.IsPelinIDSet() && info.IsTimestampSet());
}

TEST(TaggedInput, OfNothingInitializesTheObject)
{
    const auto info = read<PelinInfo>(QByteArray());
    EXPECT_TRUE(info.IsInitialized());
    EXPECT_FALSE(info.AnyData());
}

TEST(TaggedInput, OfAnEmptyTextIsNotNull)
{
    const auto info = read<PelinInfo>(bytes("2df731bf 00000004 00000000"));
    EXPECT_FALSE(info.GetPelinID().isNull());
    EXPECT_TRUE(info.GetPelinID().isEmpty());
}

TEST(TaggedInput, OfANullTextStaysNullAndIsRefusedByTheSetter)
{
    const QByteArray payload = bytes("2df731bf 00000004 ffffffff");
    const auto info = read<PelinInfo>(payload, false);
    EXPECT_TRUE(info.GetPelinID().isNull());
    EXPECT_TRUE(info.IsPelinIDSet());
    EXPECT_EQ(failureOf([&] { read<PelinInfo>(payload); }),
              "OutOfRangeException: PelinInfo: Please set PelinID properly (origin: Setter).");
}

TEST(TaggedInput, NarrowsNumbersAndReadsEveryKind)
{
    const auto connection = read<PelinConnection>(bytes("ce3ceca4 00000008 0000000100000007"));
    EXPECT_EQ(connection.GetPort(), 7);
    const auto status = read<MassStorageStatus>(bytes("a41c4a09 00000009 00000005") + utf8("-1.25"));
    EXPECT_EQ(status.GetFreeCapacityInPercent(), -1.25);
    const auto info = read<PelinInfo>(bytes("89e47268 00000008 ffffffffffffffff"));
    EXPECT_EQ(info.GetTimestamp(), 18446744073709551615u);
    const auto deletion = read<ForcedDeletion>(bytes("018d8177 0000000c 00000008") + utf8("To Check"));
    EXPECT_EQ(deletion.GetProcessingState(), ForcedDeletion::To_Check);
    const auto attribute = read<RecordAttribute>(bytes("adf683d6 00000001 01"));
    EXPECT_TRUE(attribute.GetIsDeletable());
}

TEST(TaggedInput, PutsEveryValueThroughItsSetter)
{
    const QByteArray literal = bytes("018d8177 00000007 00000003") + utf8("???");
    EXPECT_EQ(failureOf([&] { read<ForcedDeletion>(literal); }),
              "OutOfRangeException: enum is not valid (classname=ForcedDeletion,membername=m_processingState)");
    EXPECT_EQ(read<ForcedDeletion>(literal, false).GetProcessingState(), -1);
    EXPECT_EQ(failureOf([] { read<DataFormatLimit>(bytes("6b67897f 00000010 00000001 00000008 00000004 3f3f3f3f")); }),
              "IncompleteDefinitionException: DataFormatLimit: Tried to append not completely defined or invalid item "
              "DataFormat.");
}

TEST(TaggedInput, StepsOverAnUnknownTag)
{
    const auto info = read<PelinInfo>(bytes("01020304 00000003 aabbcc") + bytes(pelinIdFrame) +
                                      bytes("05060708 00000000") + bytes(timestampFrame));
    EXPECT_EQ(info.GetPelinID().toStdString(), "P1");
    EXPECT_EQ(info.GetTimestamp(), 5u);
}

TEST(TaggedInput, KeepsWhatItDoesNotMention)
{
    PelinInfo info;
    info.SetPelinID("old");
    readTagged(info, bytes(timestampFrame));
    EXPECT_EQ(info.GetPelinID().toStdString(), "old");
    EXPECT_EQ(info.GetTimestamp(), 5u);
}

TEST(TaggedInput, LetsListsGrow)
{
    KORVE_AvailableDevice device;
    device.AppendIPAddress("old");
    readTagged(device, bytes("6b2b0aa7 00000016 00000002 00000005 00000001 61 00000005 00000001 62"));
    EXPECT_EQ(qAsConst(device).GetIPAddress(), (QVector<QString>{"old", "a", "b"}));
    EXPECT_TRUE(device.IsIPAddressSet());
}

TEST(TaggedInput, ReadsANestedObjectInPlace)
{
    Admin admin;
    admin.GetCopySection().SetBeginSection(1);
    readTagged(admin, bytes("e4e970b6 00000010 6f12cdff 00000008 0000000000000003"));
    EXPECT_EQ(qAsConst(admin).GetCopySection().GetBeginSection(), 1u);
    EXPECT_EQ(qAsConst(admin).GetCopySection().GetEndSection(), 3u);
    EXPECT_TRUE(read<Admin>(bytes("e4e970b6 00000000")).IsCopySectionSet());
}

TEST(TaggedInput, SetsTheBitOfANestedObjectOnceThatIsRead)
{
    KORVE_RecordData record;
    EXPECT_NE(failureOf([&] { readTagged(record, bytes("e4b4d991 0000000c 2df731bf 00000004 ffffffff")); }), "");
    EXPECT_FALSE(record.IsPelinInfoSet());
    readTagged(record, bytes("e4b4d991 0000000c 2df731bf 00000004 00000000"));
    EXPECT_TRUE(record.IsPelinInfoSet());
}

TEST(TaggedInput, HandsFlagAndLoggerToFreshItems)
{
    KORVE_RecordData record;
    const auto logger = std::make_shared<Logger>();
    record.SetValidate(false);
    record.SetLogger(logger);
    readTagged(record, bytes("6a8892d3 00000014 00000001 0000000c 452d2eb7 00000004 ffffffff"));
    ASSERT_EQ(qAsConst(record).GetLinkedRecord().size(), 1);
    EXPECT_FALSE(qAsConst(record).GetLinkedRecord().at(0).GetValidate());
    EXPECT_EQ(qAsConst(record).GetLinkedRecord().at(0).GetLogger(), logger);
}

TEST(TaggedInput, StopsAtItsLengthAndLeavesTheRestOnTheStream)
{
    QDataStream in(bytes(pelinIdFrame) + bytes("12345678"));
    PelinInfo info;
    info.SetBinary(in, 14);
    quint32 rest = 0;
    in >> rest;
    EXPECT_EQ(rest, 0x12345678u);
    EXPECT_EQ(in.status(), QDataStream::Ok);
}

struct LengthCase {
    const char *name;
    const char *payload;
    int length; // as the frame says
};

void PrintTo(const LengthCase &row, std::ostream *out)
{
    *out << row.name;
}

class WrongLength : public testing::TestWithParam<LengthCase>
{
};

TEST_P(WrongLength, IsReported)
{
    for (const bool validate : {true, false}) {
        PelinInfo info;
        info.SetValidate(validate);
        EXPECT_EQ(failureOf([&] { readTagged(info, bytes(GetParam().payload), GetParam().length); }), lengthError);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Payloads, WrongLength,
    testing::Values(LengthCase{"OneTooMany", "2df731bf 00000006 00000002 5031", 15},
                    LengthCase{"OneTooFew", "2df731bf 00000006 00000002 5031", 13}, LengthCase{"NothingThere", "", 1},
                    LengthCase{"Huge", "", 2147483647}, LengthCase{"Negative", "", -1},
                    LengthCase{"CutInATag", "2df731bf 00000006 00000002 5031 89e4", 30},
                    LengthCase{"UnknownElementTooLong", "01020304 7fffffff 00", 9},
                    LengthCase{"UnknownElementOfNegativeLength", "01020304 fffffff8 00000000", 12},
                    LengthCase{"ManyOfNegativeLength", "01020304 80000000 01020304 80000000 01020304 80000000", 24},
                    LengthCase{"ElementTooLong", "89e47268 00000009 0000000000000005", 16}),
    [](const auto &row) { return std::string(row.param.name); });

// The dispatch trusts the reader of the element: only the total can show a wrong length.
TEST(WrongElementLength, GoesUnnoticedWhenTheTotalFits)
{
    PelinInfo info;
    EXPECT_EQ(failureOf([&] {
                  readTagged(info, bytes("2df731bf 00000007 00000002 5031 89e47268 00000008 0000000000000005"), 31);
              }),
              "");
    EXPECT_EQ(info.GetPelinID().toStdString(), "P1");
    EXPECT_EQ(info.GetTimestamp(), 5u);
}

struct CountCase {
    const char *name;
    const char *payload;
};

void PrintTo(const CountCase &row, std::ostream *out)
{
    *out << row.name;
}

class WrongCount : public testing::TestWithParam<CountCase>
{
};

// Whether it is reported depends on what the items read; it must neither hang nor take more than the bytes can hold.
TEST_P(WrongCount, EndsWithTheBytes)
{
    for (const bool validate : {true, false}) {
        KORVE_RecordData record;
        record.SetValidate(validate);
        const QByteArray payload = bytes(GetParam().payload);
        failureOf([&] { readTagged(record, payload); });
        EXPECT_LE(qAsConst(record).GetHistoryEntry().size(), payload.size() / 4);
        KORVE_AvailableDevice device;
        device.SetValidate(validate);
        failureOf([&] { readTagged(device, bytes("6b2b0aa7") + payload.mid(4)); });
        EXPECT_LE(qAsConst(device).GetIPAddress().size(), payload.size() / 4);
    }
}

INSTANTIATE_TEST_SUITE_P(Lists, WrongCount,
                         testing::Values(CountCase{"Huge", "e5e90e78 00000004 7fffffff"},
                                         CountCase{"Negative", "e5e90e78 00000004 80000000"},
                                         CountCase{"MinusOne", "e5e90e78 00000004 ffffffff"},
                                         CountCase{"MoreThanItems", "e5e90e78 00000008 00000003 00000000"},
                                         CountCase{"HugeWithOneItem", "e5e90e78 00000008 7fffffff 00000000"},
                                         CountCase{"ItemOfNegativeLength", "e5e90e78 00000008 00000001 80000000"},
                                         CountCase{"ItemOfHugeLength", "e5e90e78 0000000c 00000001 7fffffff 00000000"}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(HugeTextLength, TakesNoMoreMemoryThanTheBytes)
{
    const QByteArray payload = bytes("2df731bf 00000006 7fffffff 5031");
    PelinInfo info;
    info.SetValidate(false);
    failureOf([&] { readTagged(info, payload); });
    EXPECT_LE(info.GetPelinID().size(), payload.size());
}

TEST(HugeTextLength, IsRefusedByTheSetter)
{
    EXPECT_NE(failureOf([] { read<PelinInfo>(bytes("2df731bf 00000006 7fffffff 5031")); }), "");
}
