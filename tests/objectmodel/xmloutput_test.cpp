#include "objectbase/converters.h"
#include "objectmodel/admin.h"
#include "objectmodel/booleanfilter.h"
#include "objectmodel/dataformatlimit.h"
#include "objectmodel/forceddeletion.h"
#include "objectmodel/korve_availabledevice.h"
#include "objectmodel/korve_bite.h"
#include "objectmodel/korve_cfg.h"
#include "objectmodel/korve_recorddata.h"
#include "objectmodel/korvechannelparameter.h"
#include "objectmodel/numberfilter.h"
#include "objectmodel/recordcountlimit.h"
#include "objectmodel/replayingdata.h"
#include "objectmodel/su_devicemetadata.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"
#include "tests/support/objectmodel/samples.h"

#include <gtest/gtest.h>

#include <QXmlStreamWriter>

using namespace KORVE_XML;
using modeltest::xmlOf;

namespace
{

template <class T> T filled()
{
    T object;
    modeltest::fill(object);
    return object;
}

// The object with validation off, as it is written whatever it holds.
template <class T> T unchecked(T object = T())
{
    object.SetValidate(false);
    return object;
}

} // namespace

TEST(XmlOutput, WritesTheMembersInAnElementOfTheClass)
{
    PelinInfo info;
    info.SetPelinID("P1");
    info.SetTimestamp(42);
    EXPECT_EQ(xmlOf(info), "<PelinInfo><PelinID>P1</PelinID><Timestamp>42</Timestamp></PelinInfo>");
}

TEST(XmlOutput, LeavesOutOptionalMembersThatAreUnset)
{
    PelinInfo info;
    info.SetPelinID("P1");
    EXPECT_EQ(info.GetTimestamp(), 0u);
    EXPECT_EQ(xmlOf(info), "<PelinInfo><PelinID>P1</PelinID></PelinInfo>");
}

TEST(XmlOutput, AlwaysWritesMandatoryMembersWithValidationOff)
{
    EXPECT_EQ(xmlOf(unchecked<PelinInfo>()), "<PelinInfo><PelinID/></PelinInfo>");
    EXPECT_EQ(xmlOf(unchecked<RecordCountLimit>()),
              "<RecordCountLimit><UpperLimit>0</UpperLimit><LowerLimit>0</LowerLimit></RecordCountLimit>");
    EXPECT_EQ(xmlOf(unchecked<SU_DeviceMetaData>()),
              "<SU_DeviceMetaData><SU_Device><GUID/><Name/><Address/></SU_Device></SU_DeviceMetaData>");
}

TEST(XmlOutput, WritesAnInvalidEnumerationAsAnEmptyElement)
{
    ForcedDeletion deletion = unchecked<ForcedDeletion>();
    deletion.SetProcessingState(deletion.GetInvalidProcessingState());
    EXPECT_EQ(xmlOf(deletion), "<ForcedDeletion><ProcessingState/></ForcedDeletion>");
}

TEST(XmlOutput, WritesALiteralWithItsBlank)
{
    ForcedDeletion deletion;
    deletion.SetProcessingState(ForcedDeletion::Not_Processed);
    EXPECT_EQ(xmlOf(deletion), "<ForcedDeletion><ProcessingState>Not Processed</ProcessingState></ForcedDeletion>");
}

TEST(XmlOutput, WritesAttributesFirst)
{
    NumberFilter filter;
    filter.SetComparator(NumberFilter::LessOrEqual);
    filter.SetFilterValue("7");
    filter.SetType(NumberFilter::Int64);
    EXPECT_EQ(xmlOf(filter), "<NumberFilter Type=\"Int64\"><Comparator>LessOrEqual</Comparator>"
                             "<FilterValue>7</FilterValue></NumberFilter>");
}

TEST(XmlOutput, WritesEveryItemOfAListAndNothingForAnEmptyOne)
{
    DataFormatLimit limit;
    limit.SetExpirationTime(3);
    limit.GetDataFormat();
    EXPECT_EQ(xmlOf(limit), "<DataFormatLimit><ExpirationTime>3</ExpirationTime></DataFormatLimit>");
    limit.AppendDataFormat(DataFormatLimit::RAW);
    limit.AppendDataFormat(DataFormatLimit::MR200);
    EXPECT_EQ(xmlOf(limit), "<DataFormatLimit><ExpirationTime>3</ExpirationTime><DataFormat>RAW</DataFormat>"
                            "<DataFormat>MR200</DataFormat></DataFormatLimit>");
}

TEST(XmlOutput, NamesANestedObjectAfterItsClassWithoutAWrapper)
{
    Admin admin;
    admin.GetCopySection().SetBeginSection(1);
    EXPECT_EQ(xmlOf(admin), "<Admin><CopySection><BeginSection>1</BeginSection></CopySection></Admin>");
}

TEST(XmlOutput, HoldsAnElementOfItsOwnName)
{
    HistoryEntry entry;
    entry.SetTimestamp(1);
    entry.SetHistoryEntry("made");
    EXPECT_EQ(xmlOf(entry), "<HistoryEntry><Timestamp>1</Timestamp><HistoryEntry>made</HistoryEntry></HistoryEntry>");
}

TEST(XmlOutput, WritesNumbersInFullWhateverTheirWidth)
{
    RecordCountLimit limit;
    limit.SetUpperLimit(4294967295u);
    limit.SetLowerLimit(0);
    EXPECT_EQ(xmlOf(limit), "<RecordCountLimit><UpperLimit>4294967295</UpperLimit><LowerLimit>0</LowerLimit>"
                            "</RecordCountLimit>");
    PelinInfo info;
    info.SetPelinID("");
    info.SetTimestamp(18446744073709551615u);
    EXPECT_EQ(xmlOf(info), "<PelinInfo><PelinID/><Timestamp>18446744073709551615</Timestamp></PelinInfo>");
}

TEST(XmlOutput, WritesSignedNumbersAndTwoDecimals)
{
    MassStorageStatus status;
    status.SetTotalCapacity(std::numeric_limits<qint64>::min());
    status.SetFreeCapacity(-1);
    status.SetFreeCapacityInPercent(1e6 / 3);
    EXPECT_EQ(xmlOf(status), "<MassStorageStatus><TotalCapacity>-9223372036854775808</TotalCapacity>"
                             "<FreeCapacity>-1</FreeCapacity><FreeCapacityInPercent>333333.33</FreeCapacityInPercent>"
                             "</MassStorageStatus>");
}

TEST(XmlOutput, WritesADateAsTheConverterDoes)
{
    const QDateTime time(QDate(2020, 2, 29), QTime(23, 59, 58, 7), Qt::UTC);
    KORVE_Bite bite;
    bite.SetResultState(KORVE_Bite::FAILED);
    bite.SetTime(time);
    EXPECT_EQ(xmlOf(bite), "<KORVE_Bite><ResultState>FAILED</ResultState><Time>" +
                               REPORTGENERATOR::Converters::ToString(time).toStdString() + "</Time></KORVE_Bite>");
}

TEST(XmlOutput, WritesBooleansAsWords)
{
    BooleanFilter filter;
    filter.SetTestValue(true);
    EXPECT_EQ(xmlOf(filter), "<BooleanFilter><TestValue>true</TestValue></BooleanFilter>");
    filter.SetTestValue(false);
    EXPECT_EQ(xmlOf(filter), "<BooleanFilter><TestValue>false</TestValue></BooleanFilter>");
}

TEST(XmlOutput, PutsStopPositionBeforeStartPosition)
{
    const std::string xml = xmlOf(filled<KORVE_RecordData>());
    EXPECT_LT(xml.find("<RecordingLoopSize>"), xml.find("<StopPosition>"));
    EXPECT_LT(xml.find("<StopPosition>"), xml.find("<StartPosition>"));
    EXPECT_NE(xml.find("<KORVE_RecordData Finished="), std::string::npos);
}

TEST(XmlOutput, OfAnEmptyObjectThatRequiresNothingIsAnEmptyElement)
{
    EXPECT_EQ(xmlOf(Admin()), "<Admin/>");
    EXPECT_EQ(xmlOf(HistoryEntry()), "<HistoryEntry/>");
    EXPECT_EQ(xmlOf(CopySection()), "<CopySection/>");
    EXPECT_EQ(xmlOf(RecordAttribute()), "<RecordAttribute/>");
    EXPECT_EQ(xmlOf(KORVE_Cfg()), "<KORVE_Cfg/>");
}

TEST(XmlOutput, OfAnAdminWithOneMemberIsThatElement)
{
    Admin admin;
    admin.SetNotification(Admin::SESSION_FINISHED);
    EXPECT_EQ(xmlOf(admin), "<Admin><Notification>SESSION_FINISHED</Notification></Admin>");
}

TEST(XmlOutput, WritesPlainTextsOfAListAsElements)
{
    KORVE_AvailableDevice device;
    device.SetDeviceType(KORVE_AvailableDevice::HB100);
    device.AppendIPAddress("10.0.0.7");
    device.AppendIPAddress("");
    device.SetFirmware("1");
    device.SetLastBroadcast(2);
    device.SetPortNumber("http");
    EXPECT_EQ(xmlOf(device), "<KORVE_AvailableDevice><DeviceType>HB100</DeviceType><IPAddress>10.0.0.7</IPAddress>"
                             "<IPAddress/><Firmware>1</Firmware><LastBroadcast>2</LastBroadcast>"
                             "<PortNumber>http</PortNumber></KORVE_AvailableDevice>");
}

TEST(XmlOutput, LeavesTheWriterAloneWhenTheCheckFails)
{
    QString written;
    QXmlStreamWriter writer(&written);
    writer.writeStartElement("All");
    EXPECT_NE(modeltest::failureOf([&] { PelinInfo().GetXml(writer); }), "");
    Admin().GetXml(writer);
    writer.writeEndElement();
    EXPECT_EQ(written.toStdString(), "<All><Admin/></All>");
}

// Such an object passes its check, and yet it is not written.
TEST(XmlOutput, IsNothingAtAllWhenOnlyARequiredBooleanIsMissing)
{
    KORVE_RecordData record = filled<KORVE_RecordData>();
    record.ResetDeletable();
    ReplayingData replay = filled<ReplayingData>();
    replay.ResetKorveReserved();
    KorveChannelParameter parameter = filled<KorveChannelParameter>();
    parameter.ResetReplayFlag();
    ResourceStatus status = filled<ResourceStatus>();
    status.ResetSupportsReplay();
    for (const REPORTGENERATOR::IRGObject *object :
         std::initializer_list<const REPORTGENERATOR::IRGObject *>{&record, &replay, &parameter, &status}) {
        EXPECT_EQ(modeltest::failureOf([&] { object->Check(); }), "");
        EXPECT_EQ(xmlOf(*object), "") << object->GetObjectName().toStdString();
        EXPECT_EQ(modeltest::hex(modeltest::taggedForm(*object, 1)), "");
        object->SetValidate(false);
        EXPECT_NE(xmlOf(*object), "");
    }
}
