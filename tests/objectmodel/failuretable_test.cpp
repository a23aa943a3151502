#include "objectmodel/admin.h"
#include "objectmodel/configuration.h"
#include "objectmodel/dataformatlimit.h"
#include "objectmodel/discspaceusagelimit.h"
#include "objectmodel/filterconditionlist.h"
#include "objectmodel/korve_availabledevice.h"
#include "objectmodel/korve_bite.h"
#include "objectmodel/korve_cfgautodeletion.h"
#include "objectmodel/korve_cfgdevice.h"
#include "objectmodel/korve_recorddata.h"
#include "objectmodel/recordingdata.h"
#include "objectmodel/recordingsession.h"
#include "objectmodel/replayingdata.h"
#include "objectmodel/requestedsamplerate.h"
#include "objectmodel/requestsparebandwidth.h"
#include "objectmodel/su_devicemetadata.h"
#include "objectmodel/systemrecorderdetection.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"
#include "tests/support/objectmodel/samples.h"

#include <gtest/gtest.h>

#include <functional>

using namespace KORVE_XML;
using modeltest::bytes;
using modeltest::failureOf;

namespace
{

template <class T> T filled()
{
    T object;
    modeltest::fill(object);
    return object;
}

// An object that a test may put wrong values into; validation is on again when it is used.
template <class T> T spoilt(const std::function<void(T &)> &spoil)
{
    T object = filled<T>();
    object.SetValidate(false);
    spoil(object);
    object.SetValidate(true);
    return object;
}

template <class T> void readXml(const QString &document)
{
    T object;
    object.SetXmlString(document, false);
}

struct FailureCase {
    const char *name;
    std::function<void()> call;
    const char *failure;
};

std::string rowName(const testing::TestParamInfo<FailureCase> &row)
{
    return row.param.name;
}

void PrintTo(const FailureCase &row, std::ostream *out)
{
    *out << row.name;
}

} // namespace

class Failure : public testing::TestWithParam<FailureCase>
{
};

TEST_P(Failure, HasItsKindAndText)
{
    EXPECT_EQ(failureOf(GetParam().call), GetParam().failure);
}

INSTANTIATE_TEST_SUITE_P(
    Setter, Failure,
    testing::Values(
        FailureCase{"NullText", [] { PelinInfo().SetPelinID(QString()); },
                    "OutOfRangeException: PelinInfo: Please set PelinID properly (origin: Setter)."},
        FailureCase{"NullOptionalText", [] { BookmarkEntry().SetBookmark(QString()); },
                    "OutOfRangeException: BookmarkEntry: Please set Bookmark properly (origin: Setter)."},
        FailureCase{"NullAttribute", [] { FilterConditionList().SetID(QString()); },
                    "OutOfRangeException: FilterConditionList: Please set ID properly (origin: Setter)."},
        FailureCase{"InvalidEnumeration",
                    [] { KORVE_RecordData().SetRecordStatus(static_cast<KORVE_RecordData::RecordStatus>(-1)); },
                    "OutOfRangeException: enum is not valid (classname=KORVE_RecordData,membername=m_recordStatus)"},
        FailureCase{"EnumerationBehindTheList", [] { Admin().SetNotification(static_cast<Admin::Notification>(39)); },
                    "OutOfRangeException: enum is not valid (classname=Admin,membername=m_notification)"},
        FailureCase{"PortTooSmall", [] { KORVE_CfgDevice().SetPort(0); },
                    "OutOfRangeException: Parameters for m_port are not set within range (1, 65536) in "
                    "'KORVE_CfgDevice'."},
        FailureCase{"PortTooLarge", [] { KORVE_CfgDevice().SetPort(65537); },
                    "OutOfRangeException: Parameters for m_port are not set within range (1, 65536) in "
                    "'KORVE_CfgDevice'."},
        FailureCase{"SampleSizeZero", [] { RequestedSampleRate().SetSampleSize(0); },
                    "OutOfRangeException: Parameters for m_sampleSize are not set within range (1, 65536) in "
                    "'RequestedSampleRate'."},
        FailureCase{"SampleSizeTooLarge", [] { RequestedSampleRate().SetSampleSize(65537); },
                    "OutOfRangeException: Parameters for m_sampleSize are not set within range (1, 65536) in "
                    "'RequestedSampleRate'."},
        FailureCase{"UpperLimitAboveAll", [] { DiscSpaceUsageLimit().SetUpperLimit(101); },
                    "OutOfRangeException: Parameters for m_upperLimit are not set within range (0, 100) in "
                    "'DiscSpaceUsageLimit'."},
        FailureCase{"LowerLimitAboveAll", [] { DiscSpaceUsageLimit().SetLowerLimit(101); },
                    "OutOfRangeException: Parameters for m_lowerLimit are not set within range (0, 100) in "
                    "'DiscSpaceUsageLimit'."},
        FailureCase{"IntervallZero", [] { KORVE_CfgAutoDeletion().SetIntervall(0); },
                    "OutOfRangeException: Parameters for m_intervall must be larger or equal 1 in "
                    "'KORVE_CfgAutoDeletion'."}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Check, Failure,
    testing::Values(
        FailureCase{"MandatoryUnset", [] { PelinInfo().Check(); },
                    "OutOfRangeException: PelinInfo: Please set PelinID properly."},
        FailureCase{"MandatoryInvalid",
                    [] { spoilt<PelinInfo>([](PelinInfo &info) { info.SetPelinID(QString()); }).Check(); },
                    "OutOfRangeException: PelinInfo: Please set PelinID properly."},
        FailureCase{"OptionalInvalid",
                    [] { spoilt<KORVE_RecordData>([](auto &record) { record.SetKorveAddress(QString()); }).Check(); },
                    "OutOfRangeException: KORVE_RecordData: Please set KorveAddress properly."},
        FailureCase{"OptionalEnumerationInvalid",
                    [] {
                        spoilt<KORVE_RecordData>([](auto &record) {
                            record.SetInterface(static_cast<KORVE_RecordData::Interface>(5));
                        }).Check();
                    },
                    "OutOfRangeException: KORVE_RecordData: Please set Interface properly."},
        FailureCase{"OutOfRange", [] { spoilt<KORVE_CfgDevice>([](auto &device) { device.SetPort(0); }).Check(); },
                    "OutOfRangeException: KORVE_CfgDevice: Please set Port properly."},
        FailureCase{"UsableDefaultButUnset", [] { KORVE_CfgAutoDeletion().Check(); },
                    "OutOfRangeException: KORVE_CfgAutoDeletion: Please set Intervall properly."},
        FailureCase{"ReadyButUnset",
                    [] {
                        RecordingSession session;
                        session.SetChannelId("C1");
                        session.Check();
                    },
                    "OutOfRangeException: RecordingSession: Please set RecordingState properly."},
        FailureCase{"OkButUnset", [] { KORVE_Bite().Check(); },
                    "OutOfRangeException: KORVE_Bite: Please set ResultState properly."},
        FailureCase{"WithValidationOff",
                    [] {
                        const PelinInfo info;
                        info.SetValidate(false);
                        info.Check(true);
                    },
                    "OutOfRangeException: PelinInfo: Please set PelinID properly."},
        FailureCase{"ScalarsBeforeObjects",
                    [] {
                        RequestSpareBandwidth request;
                        request.SetResourceType(RequestSpareBandwidth::LAN);
                        request.Check();
                    },
                    "OutOfRangeException: RequestSpareBandwidth: Please set Throughput properly."},
        FailureCase{"MandatoryObject",
                    [] {
                        RecordingData data = filled<RecordingData>();
                        data.ResetNetIfParams();
                        data.Check();
                    },
                    "OutOfRangeException: NetIfParams: Please set KorveInterfaceType properly."},
        FailureCase{"OptionalObjectLookedAt",
                    [] {
                        KORVE_RecordData record = filled<KORVE_RecordData>();
                        record.ResetPelinInfo();
                        record.Check();
                        record.GetPelinInfo();
                        record.Check();
                    },
                    "OutOfRangeException: PelinInfo: Please set PelinID properly."},
        FailureCase{"ItemOfAList",
                    [] {
                        KORVE_RecordData record = filled<KORVE_RecordData>();
                        record.GetIndexEntry().append(IndexEntry());
                        record.Check();
                    },
                    "OutOfRangeException: IndexEntry: Please set RecordOffset properly."}),
    rowName);

// What the owner says of an object that must have data is heard where the object's own check, which comes first, asks
// for less: an alternative must be set, and may yet be a null text.
INSTANTIATE_TEST_SUITE_P(
    Output, Failure,
    testing::Values(FailureCase{"MandatoryUnset", [] { modeltest::xmlOf(PelinInfo()); },
                                "OutOfRangeException: PelinInfo: Please set PelinID properly."},
                    FailureCase{"MandatoryUnsetTagged", [] { modeltest::taggedForm(PelinInfo(), 0); },
                                "OutOfRangeException: PelinInfo: Please set PelinID properly."},
                    FailureCase{"WholeDocument", [] { PelinInfo().GetXmlString(); },
                                "OutOfRangeException: PelinInfo: Please set PelinID properly."},
                    FailureCase{"NetIfParamsOfARecording",
                                [] {
                                    RecordingData data = filled<RecordingData>();
                                    data.ResetNetIfParams();
                                    modeltest::xmlOf(data);
                                },
                                "OutOfRangeException: NetIfParams: Please set KorveInterfaceType properly."},
                    FailureCase{"NetIfParamsOfAReplay",
                                [] {
                                    ReplayingData data = filled<ReplayingData>();
                                    data.ResetNetIfParams();
                                    modeltest::xmlOf(data);
                                },
                                "OutOfRangeException: NetIfParams: Please set KorveInterfaceType properly."},
                    FailureCase{"DeviceOfItsMetaData", [] { modeltest::xmlOf(SU_DeviceMetaData()); },
                                "OutOfRangeException: SU_Device: Please set GUID properly."},
                    FailureCase{"ConfigurationOfARequest",
                                [] {
                                    RequestSpareBandwidth request = filled<RequestSpareBandwidth>();
                                    request.ResetConfiguration();
                                    modeltest::xmlOf(request);
                                },
                                "IncompleteDefinitionException: Configuration:Check failed. The mandatory choice "
                                "ChoiceConfiguration is not initialized"},
                    FailureCase{"ConfigurationOfARequestWithANullAlternative",
                                [] {
                                    const auto request = spoilt<RequestSpareBandwidth>([](auto &bad) {
                                        bad.GetConfiguration().SetIPAddress(QString());
                                    });
                                    modeltest::xmlOf(request);
                                },
                                "IncompleteDefinitionException: Parameters for Configuration are not set properly in "
                                "'RequestSpareBandwidth'."},
                    FailureCase{"SpareDataRatesOfARequest",
                                [] {
                                    RequestSpareBandwidth request = filled<RequestSpareBandwidth>();
                                    request.GetSpareDataRates().append(SpareDataRates());
                                    modeltest::xmlOf(request);
                                },
                                "OutOfRangeException: SpareDataRates: Please set NumberOfSessions properly."},
                    FailureCase{"BiteTestOfABite",
                                [] {
                                    KORVE_Bite bite = filled<KORVE_Bite>();
                                    bite.GetBiteTest().append(BiteTest());
                                    modeltest::xmlOf(bite);
                                },
                                "OutOfRangeException: BiteTest: Please set MessageText properly."}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Append, Failure,
    testing::Values(
        FailureCase{
            "IncompleteItem",
            [] {
                IndexEntry entry;
                entry.SetRecordOffset(5);
                KORVE_RecordData().AppendIndexEntry(entry);
            },
            "IncompleteDefinitionException: KORVE_RecordData: Tried to append not completely defined or invalid "
            "item IndexEntry."},
        FailureCase{"NullAddress", [] { KORVE_AvailableDevice().AppendIPAddress(QString()); },
                    "IncompleteDefinitionException: KORVE_AvailableDevice: Tried to append not completely defined or "
                    "invalid item IPAddress."},
        FailureCase{"NullLanAddress", [] { SystemRecorderDetection().AppendLanIp(QString()); },
                    "IncompleteDefinitionException: SystemRecorderDetection: Tried to append not completely defined or "
                    "invalid item LanIp."},
        FailureCase{"InvalidDataFormat",
                    [] { DataFormatLimit().AppendDataFormat(static_cast<DataFormatLimit::DataFormat>(29)); },
                    "IncompleteDefinitionException: DataFormatLimit: Tried to append not completely defined or invalid "
                    "item DataFormat."}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Input, Failure,
    testing::Values(
        FailureCase{"EmptyBoolean",
                    [] { readXml<KORVE_RecordData>("<KORVE_RecordData><Deletable/></KORVE_RecordData>"); },
                    "InvalidXmlException: Please set a value or a default for the boolean 'Deletable' in "
                    "'KORVE_RecordData'."},
        FailureCase{"EmptyBooleanAttribute",
                    [] { readXml<KORVE_CfgAutoDeletion>("<KORVE_CfgAutoDeletion Enabled=''/>"); },
                    "InvalidXmlException: Please set a value or a default for the boolean 'Enabled' in "
                    "'KORVE_CfgAutoDeletion'."},
        FailureCase{
            "UnknownLiteral",
            [] { readXml<KORVE_RecordData>("<KORVE_RecordData><RecordStatus>idle</RecordStatus></KORVE_RecordData>"); },
            "OutOfRangeException: enum is not valid (classname=KORVE_RecordData,membername=m_recordStatus)"},
        FailureCase{"NoNumber",
                    [] { readXml<KORVE_CfgDevice>("<KORVE_CfgDevice><Port>many</Port></KORVE_CfgDevice>"); },
                    "OutOfRangeException: Parameters for m_port are not set within range (1, 65536) in "
                    "'KORVE_CfgDevice'."},
        FailureCase{"UnknownElementOfAFilterList",
                    [] { readXml<FilterConditionList>("<FilterConditionList><Name/></FilterConditionList>"); },
                    "InvalidXmlException: Unknown Tag 'Name' in 'FilterConditionList'."},
        FailureCase{
            "LengthOfATaggedForm",
            [] {
                PelinInfo info;
                modeltest::readTagged(info, bytes("89e47268 00000008 0000000000000001 00"));
            },
            "BinaryParsingException: PelinInfo::SetBinary(...): Length error occurred during processing of binary "
            "representation"},
        FailureCase{
            "ItemWithoutData",
            [] { readXml<KORVE_RecordData>("<KORVE_RecordData><LinkedRecord/></KORVE_RecordData>"); },
            "IncompleteDefinitionException: KORVE_RecordData: Tried to append not completely defined or invalid "
            "item LinkedRecord."}),
    rowName);

TEST(ValidationOff, LetsSettersAndAppendsPass)
{
    KORVE_CfgDevice device;
    device.SetValidate(false);
    KORVE_AvailableDevice available;
    available.SetValidate(false);
    EXPECT_EQ(failureOf([&] { device.SetPort(0); }), "");
    EXPECT_EQ(failureOf([&] { device.SetName(QString()); }), "");
    EXPECT_EQ(failureOf([&] { available.AppendIPAddress(QString()); }), "");
    EXPECT_EQ(device.GetPort(), 0);
    EXPECT_EQ(qAsConst(available).GetIPAddress().size(), 1);
}

TEST(ValidationOff, LetsAnEmptyBooleanPassAsItsDefault)
{
    KORVE_RecordData record;
    record.SetValidate(false);
    EXPECT_TRUE(record.SetXmlString("<KORVE_RecordData><Deletable/></KORVE_RecordData>", false));
    EXPECT_TRUE(record.IsDeletableSet());
    EXPECT_FALSE(record.GetDeletable());
}

TEST(ValidationOff, DoesNotHideALengthErrorOrAnUnknownTag)
{
    FilterConditionList list;
    list.SetValidate(false);
    EXPECT_NE(failureOf([&] { list.SetXmlString("<FilterConditionList><X/></FilterConditionList>", false); }), "");
    PelinInfo info;
    info.SetValidate(false);
    EXPECT_NE(failureOf([&] { modeltest::readTagged(info, QByteArray(), 4); }), "");
}

TEST(RefusedBounds, AreJustOutsideTheAcceptedOnes)
{
    EXPECT_EQ(failureOf([] {
                  KORVE_CfgDevice().SetPort(1);
                  KORVE_CfgDevice().SetPort(65536);
                  RequestedSampleRate().SetSampleSize(1);
                  RequestedSampleRate().SetSampleSize(65536);
                  DiscSpaceUsageLimit().SetUpperLimit(100);
                  DiscSpaceUsageLimit().SetLowerLimit(0);
                  KORVE_CfgAutoDeletion().SetIntervall(1);
                  KORVE_AvailableDevice().AppendIPAddress("");
              }),
              "");
}
