#include "objectbase/logger.h"
#include "objectmodel/korve_recorddata.h"
#include "objectmodel/korve_storagestatus.h"
#include "objectmodel/massstoragestatus.h"
#include "objectmodel/pelininfo.h"
#include "tests/support/objectmodel/forms.h"
#include "tests/support/objectmodel/samples.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <memory>
#include <thread>

using namespace KORVE_XML;
using REPORTGENERATOR::Logger;

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

// The address of a field: it changes when the object leaves a storage that it shares.
const void *storageOf(const KORVE_RecordData &record)
{
    return &record.GetRecordStatus();
}

} // namespace

TEST(Copy, SharesItsStorageUntilOneSideIsLookedAt)
{
    const KORVE_RecordData original = filledRecord();
    const void *const storage = storageOf(original);
    const KORVE_RecordData copy(original);
    EXPECT_NE(storageOf(original), storage);
    EXPECT_EQ(storageOf(copy), storage);
}

TEST(Copy, LeavesTheStorageWhenItIsAskedWhetherAMemberIsSet)
{
    const KORVE_RecordData original = filledRecord();
    const void *const storage = storageOf(original);
    const KORVE_RecordData copy(original);
    EXPECT_TRUE(copy.IsRecordIDSet());
    EXPECT_EQ(storageOf(original), storage);
    EXPECT_NE(storageOf(copy), storage);
}

TEST(Copy, LeavesTheStorageWhenItIsAskedForData)
{
    const KORVE_RecordData original = filledRecord();
    const void *const storage = storageOf(original);
    const KORVE_RecordData copy(original);
    EXPECT_TRUE(copy.HasData());
    EXPECT_EQ(storageOf(original), storage);
}

TEST(Copy, IsEqualAndIndependent)
{
    KORVE_RecordData original = filledRecord();
    KORVE_RecordData copy(original);
    EXPECT_TRUE(copy == original);
    copy.SetRecordID("other");
    copy.GetPelinInfo().SetPelinID("other");
    copy.GetIndexEntry()[0].SetTimestamp(1);
    EXPECT_TRUE(original == filledRecord());
    EXPECT_TRUE(copy != original);
    original.GetBookmarkEntry().clear();
    EXPECT_EQ(qAsConst(copy).GetBookmarkEntry().size(), 2);
}

TEST(Copy, TakesObjectTypeNameAndFlagButNotTheLogger)
{
    PelinInfo original = pelinInfo("P1");
    original.SetValidate(false);
    original.SetLogger(std::make_shared<Logger>());
    const PelinInfo copy(original);
    EXPECT_EQ(copy.GetObjectType(), original.GetObjectType());
    EXPECT_EQ(copy.GetObjectName().toStdString(), "PelinInfo");
    EXPECT_FALSE(copy.GetValidate());
    EXPECT_EQ(copy.GetLogger(), nullptr);
}

TEST(Copy, OfAnUninitializedObjectIsUninitialized)
{
    const PelinInfo original;
    const PelinInfo copy(original);
    EXPECT_FALSE(copy.IsInitialized() || original.IsInitialized());
}

TEST(Copy, CanBeUsedInAnotherThread)
{
    const KORVE_RecordData original = filledRecord();
    const auto work = [](KORVE_RecordData mine) {
        for (int round = 0; round < 500; ++round) {
            KORVE_RecordData copy(mine);
            copy.GetPelinInfo().SetTimestamp(static_cast<quint64>(round));
            mine = copy;
        }
    };
    std::thread other(work, original);
    work(original);
    other.join();
    EXPECT_TRUE(original == filledRecord());
}

TEST(Assignment, SharesTheValueButKeepsFlagAndLogger)
{
    const auto logger = std::make_shared<Logger>();
    PelinInfo target;
    target.SetValidate(false);
    target.SetLogger(logger);
    PelinInfo source = pelinInfo("P1");
    target = source;
    EXPECT_EQ(target.GetPelinID().toStdString(), "P1");
    EXPECT_FALSE(target.GetValidate());
    EXPECT_EQ(target.GetLogger(), logger);
    EXPECT_TRUE(source.GetValidate());
}

TEST(Assignment, ToItselfDoesNothing)
{
    PelinInfo info = pelinInfo("P1");
    const PelinInfo &same = info;
    info = same;
    EXPECT_EQ(info.GetPelinID().toStdString(), "P1");
    EXPECT_TRUE(info.IsPelinIDSet());
}

TEST(Assignment, FromAnUninitializedObjectIsTheOnlyWayBack)
{
    PelinInfo info = pelinInfo("P1");
    info = PelinInfo();
    EXPECT_FALSE(info.IsInitialized());
    EXPECT_FALSE(info.IsPelinIDSet());
}

TEST(Equality, HoldsBetweenUninitializedAndInitializedButUnset)
{
    const PelinInfo initialized;
    EXPECT_TRUE(initialized.GetPelinID().isNull());
    EXPECT_TRUE(PelinInfo() == PelinInfo());
    EXPECT_TRUE(PelinInfo() == initialized);
    EXPECT_TRUE(initialized == PelinInfo());
    EXPECT_FALSE(initialized != PelinInfo());
}

TEST(Equality, NeedsTheSameBitsAndValues)
{
    PelinInfo first = pelinInfo("P1");
    PelinInfo second = pelinInfo("P1");
    EXPECT_TRUE(first == second);
    second.SetTimestamp(0);
    EXPECT_FALSE(first == second);
    EXPECT_FALSE(second == first);
    first.SetTimestamp(1);
    EXPECT_TRUE(first != second);
    first.SetTimestamp(0);
    EXPECT_TRUE(first == second);
    EXPECT_FALSE(PelinInfo() == first);
}

TEST(Equality, DoesNotCompareTheFieldsOfUnsetMembers)
{
    PelinInfo unset;
    modeltest::readCompact(unset, modeltest::bytes("00 00000002 0050"));
    EXPECT_EQ(unset.GetPelinID().toStdString(), "P");
    EXPECT_FALSE(unset.IsPelinIDSet());
    EXPECT_TRUE(unset == PelinInfo());
}

TEST(Equality, ComparesNestedObjectsAndLists)
{
    KORVE_RecordData record = filledRecord();
    record.GetIndexEntry()[1].SetBandwidth(1);
    EXPECT_FALSE(record == filledRecord());
    record = filledRecord();
    record.GetPelinInfo().SetTimestamp(1);
    EXPECT_FALSE(record == filledRecord());
    record = filledRecord();
    record.GetLinkedRecord().removeLast();
    EXPECT_FALSE(record == filledRecord());
}

TEST(Equality, OfAnUndefinedNumberIsNeverTrue)
{
    MassStorageStatus storage;
    storage.SetFreeCapacityInPercent(std::numeric_limits<double>::quiet_NaN());
    const MassStorageStatus copy(storage); // shares the storage
    EXPECT_FALSE(copy == storage);
    KORVE_StorageStatus recorder;
    recorder.SetMassStorageStatus(storage);
    const KORVE_StorageStatus sameRecorder(recorder);
    EXPECT_TRUE(sameRecorder != recorder) << "also within an object";
    storage.SetFreeCapacityInPercent(12.5);
    EXPECT_TRUE(MassStorageStatus(storage) == storage);
}

TEST(Equality, IgnoresFlagAndLogger)
{
    PelinInfo first = pelinInfo("P1");
    const PelinInfo second = pelinInfo("P1");
    first.SetValidate(false);
    first.SetLogger(std::make_shared<Logger>());
    EXPECT_TRUE(first == second);
}

TEST(ValidationFlag, ReachesNestedObjectsAndItems)
{
    const KORVE_RecordData record = filledRecord();
    record.SetValidate(false);
    EXPECT_FALSE(record.GetValidate());
    EXPECT_FALSE(record.GetPelinInfo().GetValidate());
    EXPECT_FALSE(record.GetIndexEntry().at(1).GetValidate());
    EXPECT_FALSE(record.GetLinkedRecord().at(0).GetValidate());
    record.SetValidate(true);
    EXPECT_TRUE(record.GetPelinInfo().GetValidate() && record.GetIndexEntry().at(1).GetValidate());
}

TEST(ValidationFlag, ReachesNestedObjectsThatAreJustMade)
{
    const KORVE_RecordData record;
    record.SetValidate(false);
    EXPECT_FALSE(record.IsInitialized());
    EXPECT_FALSE(record.GetPelinInfo().GetValidate());
}

struct LiningUpCase {
    const char *name;
    std::function<void(KORVE_RecordData &)> work;
};

void PrintTo(const LiningUpCase &row, std::ostream *out)
{
    *out << row.name;
}

class LiningUp : public testing::TestWithParam<LiningUpCase>
{
};

TEST_P(LiningUp, GivesNestedObjectsAndItemsTheSettingsOfTheirOwner)
{
    const auto logger = std::make_shared<Logger>();
    KORVE_RecordData record = filledRecord();
    record.SetLogger(logger);
    record.GetPelinInfo().SetValidate(false);
    record.GetIndexEntry()[1].ResetLogger();
    GetParam().work(record);
    EXPECT_TRUE(qAsConst(record).GetPelinInfo().GetValidate());
    EXPECT_EQ(qAsConst(record).GetIndexEntry().at(1).GetLogger(), logger);
}

INSTANTIATE_TEST_SUITE_P(
    By, LiningUp,
    testing::Values(LiningUpCase{"Check", [](KORVE_RecordData &record) { record.Check(); }},
                    LiningUpCase{"XmlOutput", [](KORVE_RecordData &record) { modeltest::xmlOf(record); }},
                    LiningUpCase{"TaggedOutput", [](KORVE_RecordData &record) { modeltest::taggedPayload(record); }},
                    LiningUpCase{"TaggedInput",
                                 [](KORVE_RecordData &record) { modeltest::readTagged(record, QByteArray()); }}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(LoggerOfAnObject, ReachesNestedObjectsAndItems)
{
    const auto logger = std::make_shared<Logger>();
    const KORVE_RecordData filled = filledRecord();
    filled.SetLogger(logger);
    EXPECT_EQ(filled.GetLogger(), logger);
    EXPECT_EQ(filled.GetPelinInfo().GetLogger(), logger);
    EXPECT_EQ(filled.GetBookmarkEntry().at(1).GetLogger(), logger);
    const KORVE_RecordData fresh;
    fresh.SetLogger(logger);
    EXPECT_EQ(fresh.GetPelinInfo().GetLogger(), logger);
}

TEST(LoggerOfAnObject, CanBeTakenAway)
{
    const PelinInfo info;
    info.SetLogger(std::make_shared<Logger>());
    info.ResetLogger();
    EXPECT_EQ(info.GetLogger(), nullptr);
}
