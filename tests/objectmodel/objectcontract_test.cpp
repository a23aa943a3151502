#include "objectmodel/discspaceusagelimit.h"
#include "objectmodel/korve_availabledevice.h"
#include "objectmodel/korve_cfgautodeletion.h"
#include "objectmodel/korve_cfgdevice.h"
#include "objectmodel/korve_recorddata.h"
#include "objectmodel/pelinconnection.h"
#include "objectmodel/pelininfo.h"
#include "objectmodel/recordattribute.h"
#include "objectmodel/recordcountlimit.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"
#include "tests/support/objectmodel/samples.h"

#include <gtest/gtest.h>

#include <type_traits>

using namespace KORVE_XML;
using modeltest::failureOf;

namespace
{

PelinInfo pelinInfo(const QString &id)
{
    PelinInfo info;
    info.SetPelinID(id);
    return info;
}

KORVE_RecordData filledRecord()
{
    KORVE_RecordData record;
    modeltest::fill(record);
    return record;
}

} // namespace

TEST(NewObject, HasNothingAndIsNotInitialized)
{
    const PelinInfo info;
    EXPECT_FALSE(info.HasData());
    EXPECT_FALSE(info.AnyData());
    EXPECT_FALSE(info.IsPelinIDSet());
    EXPECT_FALSE(info.IsTimestampSet());
    EXPECT_FALSE(info.IsInitialized());
}

TEST(NewObject, KnowsItsNameAndItsPositiveIdentifier)
{
    EXPECT_EQ(PelinInfo().GetObjectName().toStdString(), "PelinInfo");
    EXPECT_EQ(QString(PelinInfo::GetStaticObjectName()).toStdString(), "PelinInfo");
    static_assert(std::is_same_v<decltype(PelinInfo::GetId()), qint64>);
    EXPECT_EQ(PelinInfo::GetId(), Q_INT64_C(0xcc0993ae));
}

TEST(NewObject, Validates)
{
    EXPECT_TRUE(PelinInfo().GetValidate());
}

TEST(NewObject, IsInitializedByAGetterWhichSetsNothing)
{
    const PelinInfo info;
    EXPECT_TRUE(info.GetPelinID().isNull());
    EXPECT_TRUE(info.IsInitialized());
    EXPECT_FALSE(info.IsPelinIDSet());
    EXPECT_FALSE(info.AnyData());
}

TEST(NewObject, StaysUninitializedWhenItIsAskedOrReset)
{
    PelinInfo info;
    info.ResetPelinID();
    info.Reset();
    EXPECT_FALSE(info.HasData() || info.AnyData() || info.IsTimestampSet());
    EXPECT_FALSE(info.IsInitialized());
}

TEST(ObjectType, CannotBeChanged)
{
    PelinInfo info;
    const REPORTGENERATOR::ObjectTypes before = info.GetObjectType();
    info.SetObjectType(static_cast<REPORTGENERATOR::ObjectTypes>(before == 0 ? 1 : 0));
    EXPECT_EQ(info.GetObjectType(), before);
}

// The types of the accessors, checked by the compiler.
using Record = const KORVE_RecordData &;
static_assert(std::is_same_v<decltype(std::declval<Record>().GetRecordID()), QString>);
static_assert(std::is_same_v<decltype(std::declval<Record>().GetSize()), quint64>);
static_assert(std::is_same_v<decltype(std::declval<Record>().GetFinished()), bool>);
static_assert(
    std::is_same_v<decltype(std::declval<Record>().GetRecordStatus()), const KORVE_RecordData::RecordStatus &>);
static_assert(std::is_same_v<decltype(std::declval<Record>().GetPelinInfo()), const PelinInfo &>);
static_assert(std::is_same_v<decltype(std::declval<Record>().GetIndexEntry()), const QVector<IndexEntry> &>);
static_assert(std::is_same_v<decltype(std::declval<KORVE_RecordData &>().GetPelinInfo()), PelinInfo &>);
static_assert(std::is_same_v<decltype(std::declval<KORVE_RecordData &>().GetIndexEntry()), QVector<IndexEntry> &>);
static_assert(std::is_same_v<decltype(std::declval<Record>().GetDefaultRecordID()), const QString>);

TEST(Validity, OfAListIsAskedForAnItemAndForAllItems)
{
    const KORVE_AvailableDevice device;
    EXPECT_FALSE(device.IsValidIPAddress(QString()));
    EXPECT_TRUE(device.IsValidIPAddress(QString("")));
    EXPECT_TRUE(device.IsValidIPAddress(QVector<QString>{"10.0.0.7", ""}));
    EXPECT_TRUE(KORVE_RecordData().IsValidIndexEntry(IndexEntry()));
    EXPECT_TRUE(KORVE_RecordData().IsValidIndexEntry(QVector<IndexEntry>(1)));
}

TEST(Validity, OfANumberHasInclusiveBounds)
{
    const KORVE_CfgDevice device;
    EXPECT_FALSE(device.IsValidPort(0));
    EXPECT_TRUE(device.IsValidPort(1));
    EXPECT_TRUE(device.IsValidPort(65536));
    EXPECT_FALSE(device.IsValidPort(65537));
    EXPECT_FALSE(KORVE_CfgAutoDeletion().IsValidIntervall(0));
    EXPECT_TRUE(KORVE_CfgAutoDeletion().IsValidIntervall(4294967295u));
    EXPECT_TRUE(PelinConnection().IsValidPort(-1));
}

TEST(Validity, OfALimitIsAPercentageOnlyForDiscSpace)
{
    EXPECT_TRUE(DiscSpaceUsageLimit().IsValidUpperLimit(0));
    EXPECT_TRUE(DiscSpaceUsageLimit().IsValidUpperLimit(100));
    EXPECT_FALSE(DiscSpaceUsageLimit().IsValidLowerLimit(101));
    EXPECT_TRUE(RecordCountLimit().IsValidUpperLimit(4294967295u));
}

TEST(Limits, AreNotComparedWithEachOther)
{
    DiscSpaceUsageLimit limit;
    limit.SetUpperLimit(10);
    limit.SetLowerLimit(90);
    EXPECT_EQ(failureOf([&] { limit.Check(); }), "");
}

TEST(Accessors, DoubleTheirEndingsWithoutException)
{
    RecordAttribute attribute;
    attribute.SetIsDeletable(true);
    EXPECT_TRUE(attribute.IsIsDeletableSet());
    EXPECT_EQ(KORVE_RecordData::GetRecordStatuss().size(), 9);
}

TEST(Getter, YieldsTheDefaultOfAnUnsetMember)
{
    const KORVE_RecordData record;
    EXPECT_TRUE(record.GetFinished());
    EXPECT_EQ(record.GetSize(), 0u);
    EXPECT_EQ(record.GetRecordStatus(), -1);
    EXPECT_EQ(record.GetInterface(), 0);
    EXPECT_EQ(record.GetInterfaceAsString().toStdString(), "Unknown");
    EXPECT_TRUE(record.GetRecordStatusAsString().isNull());
    EXPECT_FALSE(record.IsFinishedSet() || record.IsInterfaceSet() || record.IsRecordStatusSet());
}

TEST(Getter, OfAListOrObjectSetsTheBitWhenItIsNotConst)
{
    KORVE_RecordData record;
    EXPECT_TRUE(qAsConst(record).GetIndexEntry().isEmpty());
    EXPECT_FALSE(qAsConst(record).GetPelinInfo().AnyData());
    EXPECT_FALSE(record.IsIndexEntrySet() || record.IsPelinInfoSet());
    EXPECT_TRUE(record.GetIndexEntry().isEmpty());
    EXPECT_FALSE(record.GetPelinInfo().AnyData());
    EXPECT_TRUE(record.IsIndexEntrySet() && record.IsPelinInfoSet());
}

TEST(Setter, StoresTheValueAndSetsTheBit)
{
    PelinInfo info;
    info.SetTimestamp(18446744073709551615u);
    EXPECT_EQ(info.GetTimestamp(), 18446744073709551615u);
    EXPECT_TRUE(info.IsTimestampSet());
    EXPECT_FALSE(info.IsPelinIDSet());
    EXPECT_TRUE(info.IsInitialized());
}

TEST(Setter, KeepsTheOldValueWhenItRefusesTheNewOne)
{
    PelinInfo info = pelinInfo("P1");
    EXPECT_NE(failureOf([&] { info.SetPelinID(QString()); }), "");
    EXPECT_EQ(info.GetPelinID().toStdString(), "P1");
    EXPECT_TRUE(info.IsPelinIDSet());
}

TEST(Setter, InitializesEvenWhenItRefuses)
{
    KORVE_RecordData record;
    EXPECT_NE(failureOf([&] { record.SetRecordStatus(record.GetInvalidRecordStatus()); }), "");
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.IsRecordStatusSet());
}

TEST(Setter, StoresABadValueWithValidationOff)
{
    KORVE_RecordData record;
    record.SetValidate(false);
    record.SetRecordID(QString());
    record.SetRecordStatus(static_cast<KORVE_RecordData::RecordStatus>(77));
    EXPECT_TRUE(record.IsRecordIDSet() && record.IsRecordStatusSet());
    EXPECT_TRUE(record.GetRecordID().isNull());
    EXPECT_EQ(record.GetRecordStatus(), 77);
}

TEST(Setter, OfAListOrObjectTakesAnythingUntilTheCheck)
{
    KORVE_RecordData record = filledRecord();
    EXPECT_EQ(failureOf([&] { record.SetIndexEntry(QVector<IndexEntry>(1)); }), "");
    EXPECT_EQ(failureOf([&] { record.SetPelinInfo(PelinInfo()); }), "");
    EXPECT_EQ(qAsConst(record).GetIndexEntry().size(), 1);
    EXPECT_TRUE(record.IsPelinInfoSet());
    EXPECT_NE(failureOf([&] { record.Check(); }), "");
}

TEST(Setter, TakesTheObjectsOwnContent)
{
    KORVE_RecordData record = filledRecord();
    record.SetPelinInfo(record.GetPelinInfo());
    record.SetIndexEntry(record.GetIndexEntry());
    record.SetInterface(qAsConst(record).GetInterface());
    EXPECT_TRUE(record == filledRecord());
    const KORVE_RecordData shared = record;
    record.AppendIndexEntry(qAsConst(record).GetIndexEntry().at(0));
    EXPECT_TRUE(qAsConst(record).GetIndexEntry().at(2) == shared.GetIndexEntry().at(0));
}

TEST(Append, AddsAnIncompleteItemOnlyWithValidationOff)
{
    KORVE_RecordData record;
    EXPECT_NE(failureOf([&] { record.AppendIndexEntry(IndexEntry()); }), "");
    EXPECT_TRUE(qAsConst(record).GetIndexEntry().isEmpty());
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.IsIndexEntrySet());
    record.SetValidate(false);
    record.AppendIndexEntry(IndexEntry());
    EXPECT_EQ(qAsConst(record).GetIndexEntry().size(), 1);
    EXPECT_TRUE(record.IsIndexEntrySet());
}

TEST(Append, TakesAnEmptyItemOfAClassThatRequiresNothing)
{
    KORVE_RecordData record;
    record.AppendHistoryEntry(HistoryEntry());
    EXPECT_EQ(qAsConst(record).GetHistoryEntry().size(), 1);
    EXPECT_TRUE(record.IsHistoryEntrySet());
}

TEST(ResetOfAMember, RestoresItsDefaultAndClearsItsBitAlone)
{
    KORVE_RecordData record = filledRecord();
    record.SetFinished(false);
    record.ResetFinished();
    record.ResetRecordID();
    record.ResetInterface();
    record.ResetIndexEntry();
    record.ResetPelinInfo();
    EXPECT_FALSE(record.IsFinishedSet() || record.IsRecordIDSet() || record.IsInterfaceSet());
    EXPECT_FALSE(record.IsIndexEntrySet() || record.IsPelinInfoSet());
    EXPECT_TRUE(record.GetFinished());
    EXPECT_TRUE(record.GetRecordID().isNull());
    EXPECT_EQ(record.GetInterface(), 0);
    EXPECT_TRUE(qAsConst(record).GetIndexEntry().isEmpty());
    EXPECT_FALSE(qAsConst(record).GetPelinInfo().AnyData());
    EXPECT_TRUE(record.IsKorveAddressSet() && record.IsBookmarkEntrySet());
}

TEST(ResetOfAMember, RestoresADefaultNumber)
{
    KORVE_CfgAutoDeletion deletion;
    deletion.SetIntervall(9);
    deletion.SetExpirationTime(9);
    deletion.ResetIntervall();
    deletion.ResetExpirationTime();
    EXPECT_EQ(deletion.GetIntervall(), 1u);
    EXPECT_EQ(deletion.GetExpirationTime(), 3u);
}

TEST(Reset, ClearsAllButKeepsTheObjectInitialized)
{
    KORVE_RecordData record = filledRecord();
    record.SetFinished(false);
    record.Reset();
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData() || record.HasData() || record.IsFinishedSet());
    EXPECT_TRUE(record.GetFinished());
    EXPECT_TRUE(qAsConst(record).GetLinkedRecord().isEmpty());
}

TEST(ResetToDefault, InitializesAnUninitializedObject)
{
    PelinInfo info;
    info.ResetToDefault();
    EXPECT_TRUE(info.IsInitialized());
    EXPECT_FALSE(info.AnyData());
}

TEST(ResetToDefault, CallsResetOfTheMostDerivedClassOnlyWhenInitialized)
{
    struct Counting : PelinInfo {
        int resets = 0;
        void Reset() override
        {
            ++resets;
            PelinInfo::Reset();
        }
    };
    Counting info;
    info.ResetToDefault();
    EXPECT_EQ(info.resets, 0);
    info.SetPelinID("P1");
    info.ResetToDefault();
    EXPECT_EQ(info.resets, 1);
    EXPECT_FALSE(info.IsPelinIDSet());
}

TEST(HasData, CountsATextThatIsNotNullWhateverItsBit)
{
    PelinInfo info;
    info.SetValidate(false);
    info.SetPelinID(QString());
    EXPECT_TRUE(info.IsPelinIDSet());
    EXPECT_FALSE(info.HasData());
    info.SetPelinID("");
    EXPECT_TRUE(info.HasData());
    modeltest::readCompact(info, modeltest::bytes("00 00000002 0050"));
    EXPECT_FALSE(info.IsPelinIDSet());
    EXPECT_TRUE(info.HasData());
}

TEST(HasData, CountsEverythingElseByItsBit)
{
    KORVE_RecordData record = filledRecord();
    EXPECT_TRUE(record.HasData());
    record.ResetDeletable();
    EXPECT_FALSE(record.HasData());
    record.SetDeletable(false);
    EXPECT_TRUE(record.HasData());
    record.ResetStopPosition();
    EXPECT_FALSE(record.HasData());
}

TEST(HasData, IsTrueForAClassThatRequiresNothing)
{
    const HistoryEntry history;
    EXPECT_TRUE(history.HasData());
    EXPECT_FALSE(history.IsInitialized());
}

TEST(AnyData, IgnoresDefaultsNullTextsAndEmptyLists)
{
    KORVE_RecordData record;
    record.SetValidate(false);
    EXPECT_TRUE(record.GetFinished());
    record.SetRecordID(QString());
    record.GetIndexEntry();
    EXPECT_TRUE(record.IsRecordIDSet() && record.IsIndexEntrySet());
    EXPECT_FALSE(record.AnyData());
}

TEST(AnyData, CountsATextAListAndASetBit)
{
    KORVE_RecordData text;
    text.SetRecordID("");
    EXPECT_TRUE(text.AnyData());
    KORVE_RecordData list;
    list.AppendHistoryEntry(HistoryEntry());
    EXPECT_TRUE(list.AnyData());
    KORVE_RecordData number;
    number.SetSize(0);
    EXPECT_TRUE(number.AnyData());
    KORVE_RecordData object;
    object.GetPelinInfo();
    EXPECT_TRUE(object.AnyData());
}
