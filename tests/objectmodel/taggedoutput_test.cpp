#include "objectbase/converters.h"
#include "objectmodel/admin.h"
#include "objectmodel/booleanfilter.h"
#include "objectmodel/dataformatlimit.h"
#include "objectmodel/forceddeletion.h"
#include "objectmodel/korve_bite.h"
#include "objectmodel/pelinconnection.h"
#include "objectmodel/pelininfo.h"
#include "objectmodel/recordcountlimit.h"
#include "objectmodel/requestedsamplerate.h"
#include "objectmodel/su_configuration.h"
#include "objectmodel/su_devicemetadata.h"
#include "objectmodel/systemrecorderdetection.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"

#include <gtest/gtest.h>

#include <QBuffer>

using namespace KORVE_XML;
using modeltest::bytes;
using modeltest::hex;
using modeltest::taggedForm;
using modeltest::taggedPayload;
using modeltest::utf8;

namespace
{

PelinInfo pelinInfo()
{
    PelinInfo info;
    info.SetPelinID("P1");
    info.SetTimestamp(5);
    return info;
}

// pelinInfo() by hand: the text's frame, then the number's.
const char *const pelinInfoPayload = "2df731bf 00000006 00000002 5031"
                                     "89e47268 00000008 0000000000000005";

template <class T> T unchecked()
{
    T object;
    object.SetValidate(false);
    return object;
}

} // namespace

TEST(TaggedOutput, IsTagLengthAndPayload)
{
    EXPECT_EQ(hex(taggedForm(pelinInfo(), 0xe4b4d991)), hex(bytes("e4b4d991 0000001e") + bytes(pelinInfoPayload)));
}

TEST(TaggedOutput, LeavesOutTheTagAloneWhenAskedTo)
{
    EXPECT_EQ(hex(taggedForm(pelinInfo(), 0xe4b4d991, false)), hex(bytes("0000001e") + bytes(pelinInfoPayload)));
}

TEST(TaggedOutput, LeavesOutOptionalMembersThatAreUnset)
{
    PelinInfo info;
    info.SetPelinID("");
    EXPECT_EQ(hex(taggedPayload(info)), hex(bytes("2df731bf 00000004 00000000")));
}

TEST(TaggedOutput, TellsANullTextFromAnEmptyOne)
{
    EXPECT_EQ(hex(taggedPayload(unchecked<PelinInfo>())), hex(bytes("2df731bf 00000004 ffffffff")));
}

TEST(TaggedOutput, WritesTextsInUtf8)
{
    PelinInfo info;
    info.SetPelinID(QString::fromUtf8("\u00fc\u20ac"));
    EXPECT_EQ(hex(taggedPayload(info)), hex(bytes("2df731bf 00000009 00000005 c3bc e282ac")));
}

TEST(TaggedOutput, WritesTheLiteralOfAnEnumeration)
{
    ForcedDeletion deletion;
    deletion.SetProcessingState(ForcedDeletion::To_Check);
    EXPECT_EQ(hex(taggedPayload(deletion)), hex(bytes("018d8177 0000000c 00000008") + utf8("To Check")));
}

TEST(TaggedOutput, WritesAnInvalidEnumerationAsAnEmptyText)
{
    ForcedDeletion deletion = unchecked<ForcedDeletion>();
    deletion.SetProcessingState(deletion.GetInvalidProcessingState());
    EXPECT_EQ(hex(taggedPayload(deletion)), hex(bytes("018d8177 00000004 ffffffff")));
}

TEST(TaggedOutput, WritesEveryNumberInEightBytes)
{
    PelinConnection connection;
    connection.SetHost("");
    connection.SetPort(-2);
    EXPECT_EQ(hex(taggedPayload(connection)),
              hex(bytes("c0bda507 00000004 00000000 ce3ceca4 00000008 fffffffffffffffe")));
    RecordCountLimit limit;
    limit.SetUpperLimit(4294967295u);
    limit.SetLowerLimit(1);
    EXPECT_EQ(hex(taggedPayload(limit)),
              hex(bytes("a23a946e 00000008 00000000ffffffff 05750f32 00000008 0000000000000001")));
    RequestedSampleRate rate;
    rate.SetSampleRate(18446744073709551615u);
    rate.SetSampleSize(65536);
    EXPECT_EQ(hex(taggedPayload(rate)),
              hex(bytes("06fd03a6 00000008 ffffffffffffffff 2551e2b7 00000008 0000000000010000")));
}

TEST(TaggedOutput, WritesABooleanInOneByte)
{
    BooleanFilter filter;
    filter.SetTestValue(true);
    EXPECT_EQ(hex(taggedPayload(filter)), hex(bytes("874975bc 00000001 01")));
}

TEST(TaggedOutput, WritesADoubleAsTextWithTwoDecimals)
{
    MassStorageStatus status;
    status.SetTotalCapacity(-1);
    status.SetFreeCapacity(2);
    status.SetFreeCapacityInPercent(0.126);
    EXPECT_EQ(hex(taggedPayload(status)), hex(bytes("0069505b 00000008 ffffffffffffffff"
                                                    "c47e906c 00000008 0000000000000002"
                                                    "a41c4a09 00000008 00000004") +
                                              utf8("0.13")));
}

TEST(TaggedOutput, WritesADateAsTheTextOfTheConverter)
{
    const QDateTime time(QDate(2020, 2, 29), QTime(23, 59, 58, 7), Qt::UTC);
    KORVE_Bite bite;
    bite.SetResultState(KORVE_Bite::OK);
    bite.SetTime(time);
    QByteArray expected = bytes("c8e3ecbf 00000006 00000002") + utf8("OK");
    const QByteArray text = REPORTGENERATOR::Converters::ToString(time).toUtf8();
    QDataStream(&expected, QIODevice::Append) << 0x44334af0 << text.size() + 4 << text;
    EXPECT_EQ(hex(taggedPayload(bite)), hex(expected));
}

TEST(TaggedOutput, OfANestedObjectIsTheFrameOfTheElement)
{
    Admin admin;
    admin.GetCopySection().SetEndSection(3);
    EXPECT_EQ(hex(taggedPayload(admin)), hex(bytes("e4e970b6 00000010 6f12cdff 00000008 0000000000000003")));
}

TEST(TaggedOutput, WritesAListOfObjectsAsCountAndFramesWithoutTags)
{
    SU_Device device;
    device.SetGUID("a");
    device.SetName("b");
    device.SetAddress("c");
    SU_Configuration configuration;
    configuration.AppendSU_Device(device);
    device.SetGUID("d");
    configuration.AppendSU_Device(device);
    const QByteArray rest = bytes("8c9fbca8 00000005 00000001 62 4eef30b0 00000005 00000001 63");
    EXPECT_EQ(hex(taggedPayload(configuration)),
              hex(bytes("c16c21b4 0000005a 00000002") + bytes("00000027 06db45bc 00000005 00000001 61") + rest +
                  bytes("00000027 06db45bc 00000005 00000001 64") + rest));
}

TEST(TaggedOutput, WritesAListOfTextsAsCountAndLengths)
{
    SystemRecorderDetection detection = unchecked<SystemRecorderDetection>();
    detection.AppendLanIp("ab");
    detection.AppendLanIp("");
    detection.AppendLanIp(QString());
    EXPECT_TRUE(hex(taggedPayload(detection))
                    .ends_with(hex(bytes("ad9a70bf 0000001e 00000003 00000006 00000002 6162 00000004 00000000"
                                         "00000004 ffffffff"))));
}

TEST(TaggedOutput, WritesAListOfEnumerationsAsLiterals)
{
    DataFormatLimit limit;
    limit.SetExpirationTime(0);
    limit.AppendDataFormat(DataFormatLimit::IQDW);
    EXPECT_EQ(hex(taggedPayload(limit)), hex(bytes("eec0f891 00000008 0000000000000000"
                                                   "6b67897f 00000010 00000001 00000008 00000004") +
                                             utf8("IQDW")));
}

TEST(TaggedOutput, WritesNothingForAnEmptyListThoughItsBitIsSet)
{
    SU_Configuration configuration;
    configuration.GetSU_Device();
    EXPECT_TRUE(configuration.IsSU_DeviceSet());
    EXPECT_EQ(hex(taggedForm(configuration, 1)), hex(bytes("00000001 00000000")));
}

// What the nested object lacks is not asked of it here, only in its own check.
TEST(TaggedOutput, AlwaysWritesMandatoryMembersWithValidationOff)
{
    EXPECT_EQ(hex(taggedPayload(unchecked<SU_DeviceMetaData>())),
              hex(bytes("c16c21b4 00000024 06db45bc 00000004 ffffffff 8c9fbca8 00000004 ffffffff"
                        "4eef30b0 00000004 ffffffff")));
}

TEST(TaggedOutput, SaysWhetherItWrote)
{
    QByteArray written;
    QBuffer device(&written);
    device.open(QIODevice::ReadWrite);
    QDataStream out(&device);
    const BooleanFilter empty;
    EXPECT_FALSE(empty.GetBinary(out, 1, true));
    EXPECT_TRUE(written.isEmpty());
    empty.SetValidate(false);
    EXPECT_TRUE(empty.GetBinary(out, 1, true));
    EXPECT_EQ(hex(written), hex(bytes("00000001 00000000")));
}

TEST(TaggedOutput, LeavesTheStreamAloneWhenTheCheckFails)
{
    QByteArray written;
    QBuffer device(&written);
    device.open(QIODevice::ReadWrite);
    QDataStream out(&device);
    EXPECT_NE(modeltest::failureOf([&] { PelinInfo().GetBinary(out, 1, true); }), "");
    EXPECT_EQ(hex(written), "");
    EXPECT_EQ(out.status(), QDataStream::Ok);
}

TEST(TaggedOutput, PatchesTheLengthWhereverTheDeviceStands)
{
    QByteArray written;
    QBuffer device(&written);
    device.open(QIODevice::WriteOnly);
    QDataStream out(&device);
    out << quint16(0xabcd);
    EXPECT_TRUE(pelinInfo().GetBinary(out, 1, true));
    EXPECT_TRUE(pelinInfo().GetBinary(out, 2, true));
    out << quint16(0xdcba);
    EXPECT_EQ(out.status(), QDataStream::Ok);
    EXPECT_EQ(hex(written), hex(bytes("abcd 00000001 0000001e") + bytes(pelinInfoPayload) + bytes("00000002 0000001e") +
                                bytes(pelinInfoPayload) + bytes("dcba")));
}

TEST(TaggedOutput, OverwritesWithoutCuttingWhatFollows)
{
    QByteArray written(60, '\x55');
    QBuffer device(&written);
    device.open(QIODevice::ReadWrite);
    QDataStream out(&device);
    EXPECT_TRUE(pelinInfo().GetBinary(out, 1, true));
    EXPECT_EQ(device.pos(), 38);
    EXPECT_EQ(hex(written), hex(bytes("00000001 0000001e") + bytes(pelinInfoPayload) + QByteArray(22, '\x55')));
}

TEST(TaggedOutput, KeepsTheByteOrderOfTheStream)
{
    QByteArray written;
    QBuffer device(&written);
    device.open(QIODevice::WriteOnly);
    QDataStream out(&device);
    out.setByteOrder(QDataStream::LittleEndian);
    RecordCountLimit limit;
    limit.SetUpperLimit(1);
    limit.SetLowerLimit(2);
    EXPECT_TRUE(limit.GetBinary(out, 3, true));
    EXPECT_EQ(out.byteOrder(), QDataStream::LittleEndian);
    EXPECT_EQ(hex(written), hex(bytes("03000000 20000000 6e943aa2 08000000 0100000000000000"
                                      "320f7505 08000000 0200000000000000")));
}
