#include "korvebase/recordidentifierlist.h"

#include <gmock/gmock.h>

#include <algorithm>

using korve::RecordIdentifier;
using korve::RecordIdentifierList;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace korve
{

void PrintTo(const RecordIdentifier &identifier, std::ostream *out)
{
    *out << identifier.subSystem().toStdString() << '|' << identifier.deviceID().toStdString() << '|'
         << identifier.recordID().toStdString();
}

} // namespace korve

namespace
{

const RecordIdentifier a("sub", "dev", "a");
const RecordIdentifier b("sub", "dev", "b");
const RecordIdentifier c("sub", "dev", "c");
const RecordIdentifier invalid("sub", "", "a");

/// The record "r" on very many devices: all have one hash.
RecordIdentifierList devicesWithOneRecord(int count)
{
    RecordIdentifierList list;
    for (int device = 0; device < count; ++device)
        list.append(RecordIdentifier(QString::number(device), "r"));
    return list;
}

TEST(RecordIdentifierLists, TakeEachIdentifierOnce)
{
    RecordIdentifierList list;
    EXPECT_TRUE(list.add(a));
    EXPECT_FALSE(list.add(a));
    EXPECT_FALSE(list.add("sub", "dev", "a"));
    EXPECT_TRUE(list.add("sub", "dev", "b"));
    EXPECT_TRUE(list.add("dev", "a"));
    EXPECT_FALSE(list.add("dev", "a"));
    EXPECT_THAT(list, ElementsAre(a, b, RecordIdentifier("", "dev", "a")));
}

TEST(RecordIdentifierLists, TakeWhatIsNewOfAnother)
{
    RecordIdentifierList list{a};
    EXPECT_FALSE(list.add({b, a, c}));
    EXPECT_THAT(list, ElementsAre(a, b, c));
    EXPECT_TRUE(list.add({invalid, RecordIdentifier("dev", "a")}));
    EXPECT_EQ(list.size(), 5);
}

TEST(RecordIdentifierLists, HaveTakenAllOfAnEmptyOne)
{
    RecordIdentifierList list{a};
    EXPECT_TRUE(list.add(RecordIdentifierList()));
    EXPECT_TRUE(RecordIdentifierList().add(RecordIdentifierList()));
    EXPECT_THAT(list, ElementsAre(a));
}

TEST(RecordIdentifierLists, HaveNotTakenAllOfOneWithDuplicates)
{
    RecordIdentifierList list;
    EXPECT_FALSE(list.add({a, b, a}));
    EXPECT_THAT(list, ElementsAre(a, b));
}

TEST(RecordIdentifierLists, TakeNothingFromThemselvesOrTheirCopies)
{
    RecordIdentifierList list{a, b};
    EXPECT_FALSE(list.add(list));
    const RecordIdentifierList copy = list;
    EXPECT_FALSE(list.add(copy));
    list << list << a;
    EXPECT_THAT(list, ElementsAre(a, b));
}

TEST(RecordIdentifierLists, LeaveACopyAsItWas)
{
    const RecordIdentifierList before{a};
    RecordIdentifierList list = before;
    EXPECT_TRUE(list.add({b, c}));
    EXPECT_THAT(before, ElementsAre(a));
    EXPECT_THAT(list, ElementsAre(a, b, c));
}

TEST(RecordIdentifierLists, KeepTheDuplicatesThatTheyHad)
{
    RecordIdentifierList list;
    list.append(a);
    list.append(a);
    EXPECT_TRUE(list.add({b}));
    EXPECT_THAT(list, ElementsAre(a, a, b));
}

TEST(RecordIdentifierLists, AreFilledByAStreamOfIdentifiersWithoutDuplicates)
{
    RecordIdentifierList list;
    list << a << b << a << RecordIdentifierList{b, c};
    EXPECT_THAT(list, ElementsAre(a, b, c));
}

TEST(RecordIdentifierLists, AreStillQLists)
{
    RecordIdentifierList list{a, b};
    list += a;
    list.append(QList<RecordIdentifier>{c});
    EXPECT_THAT(list, ElementsAre(a, b, a, c));
    EXPECT_EQ(list.count(), 4);
    EXPECT_EQ(list.count(a), 2);
    EXPECT_TRUE(list.contains(c));
    EXPECT_EQ(list.removeAll(a), 2);
    EXPECT_EQ(list.indexOf(c), 1);
    EXPECT_THAT(RecordIdentifierList(list.mid(1)), ElementsAre(c));
    EXPECT_TRUE(list == (RecordIdentifierList{b, c}));
}

TEST(RecordIdentifierLists, AreSortedWhereTheirIdentifiersDifferInOnePart)
{
    RecordIdentifierList list{c, a, b};
    list.sort();
    EXPECT_THAT(list, ElementsAre(a, b, c));
    RecordIdentifierList none;
    none.sort();
    EXPECT_TRUE(none.isEmpty());
}

TEST(RecordIdentifierLists, LoseNothingInSortingWhatHasNoOrder)
{
    RecordIdentifierList list;
    for (int i = 0; i < 1000; ++i)
        list.append(RecordIdentifier(QString::number(i % 7), QString::number(i % 11), QString::number(i % 13)));
    const RecordIdentifierList before = list;
    list.sort();
    EXPECT_TRUE(std::is_permutation(list.cbegin(), list.cend(), before.cbegin(), before.cend()));
}

TEST(RecordIdentifierLists, KeepTheFirstOfDuplicates)
{
    RecordIdentifierList list{a, b, a};
    EXPECT_TRUE(list.hasDuplicates());
    EXPECT_EQ(list.removeDuplicates(), 1);
    EXPECT_THAT(list, ElementsAre(a, b));
    EXPECT_FALSE(list.hasDuplicates());
    EXPECT_EQ(list.removeDuplicates(), 0);
    EXPECT_FALSE(RecordIdentifierList().hasDuplicates());
    EXPECT_FALSE((RecordIdentifierList{{"x", "dev", "a"}, {"y", "dev", "a"}}).hasDuplicates());
}

TEST(RecordIdentifierLists, RemoveInvalidOnes)
{
    RecordIdentifierList list{invalid, a, RecordIdentifier(), b};
    EXPECT_TRUE(list.hasInvalidIDs());
    EXPECT_EQ(list.removeInvalidIDs(), 2);
    EXPECT_THAT(list, ElementsAre(a, b));
    EXPECT_FALSE(list.hasInvalidIDs());
    EXPECT_EQ(list.removeInvalidIDs(), 0);
}

TEST(RecordIdentifierLists, RemoveWhatAnotherHolds)
{
    RecordIdentifierList list{a, b, a, c};
    EXPECT_EQ(list.removeAll(RecordIdentifierList{a, c, invalid}), 3);
    EXPECT_THAT(list, ElementsAre(b));
    EXPECT_EQ(list.removeAll(RecordIdentifierList()), 0);
    EXPECT_EQ(list.removeAll(list), 1);
    EXPECT_TRUE(list.isEmpty());
}

TEST(RecordIdentifierLists, RemoveARecordFromAllDevices)
{
    RecordIdentifierList list{a, {"other", "a"}, b};
    EXPECT_EQ(list.removeAll(QString("a")), 2);
    EXPECT_THAT(list, ElementsAre(b));
    EXPECT_EQ(list.removeAll("a"), 0);
}

class GroupedRecords : public testing::Test
{
protected:
    const RecordIdentifierList list{{"x", "d1", "r1"}, {"x", "d1", "r2"}, {"y", "d1", "r1"},
                                    {"x", "d2", "r1"}, {"", "d1", "r1"},  {"x", "d1", "r1"}};
};

TEST_F(GroupedRecords, HaveSubsystems)
{
    EXPECT_THAT(list.subSystems(), UnorderedElementsAre("", "x", "y"));
    EXPECT_EQ(list.countSubSystems(), 3);
    EXPECT_EQ(RecordIdentifierList().countSubSystems(), 0);
}

TEST_F(GroupedRecords, HaveDevicesOfEachSubsystem)
{
    EXPECT_THAT(list.deviceIDs("x"), UnorderedElementsAre("d1", "d2"));
    EXPECT_THAT(list.deviceIDs(""), UnorderedElementsAre("d1"));
    EXPECT_EQ(list.countDeviceIDs("x"), 2);
    EXPECT_EQ(list.countDeviceIDs("z"), 0);
    EXPECT_EQ(list.countDevices(), 4);
}

TEST_F(GroupedRecords, HaveRecordsOfEachDevice)
{
    EXPECT_THAT(list.recordIDs("x", "d1"), UnorderedElementsAre("r1", "r2"));
    EXPECT_TRUE(list.recordIDs("y", "d2").isEmpty());
}

TEST_F(GroupedRecords, AreFilteredInTheirOrder)
{
    EXPECT_THAT(list.filter("y"), ElementsAre(list.at(2)));
    EXPECT_THAT(list.filter("x", "d1"), ElementsAre(list.at(0), list.at(1), list.at(5)));
    EXPECT_THAT(list.filter([](const RecordIdentifier &each) { return each.recordID() == "r2"; }),
                ElementsAre(list.at(1)));
}

TEST_F(GroupedRecords, AreFoundByTheirRecord)
{
    EXPECT_THAT(list.find("r2"), ElementsAre(list.at(1)));
    EXPECT_EQ(list.find("r1").size(), 5);
    EXPECT_EQ(list.count("r1"), 5);
    EXPECT_TRUE(list.contains("r2"));
    EXPECT_FALSE(list.contains("R2"));
    EXPECT_TRUE(list.contains([](const RecordIdentifier &each) { return each.deviceID() == "d2"; }));
    EXPECT_FALSE(list.contains([](const RecordIdentifier &) { return false; }));
}

TEST(RecordIdentifierTexts, AreShortForThreeOrMore)
{
    const RecordIdentifierList three{a, {"dev", "b"}, c};
    EXPECT_EQ(RecordIdentifierList().toString(false), "");
    EXPECT_EQ(RecordIdentifierList{a}.toString(false), "a@sub/dev");
    EXPECT_EQ((RecordIdentifierList{a, b}.toString(false)), "a@sub/dev;b@sub/dev");
    EXPECT_EQ(three.toString(false), "3 records:a@sub/dev ... c@sub/dev");
    EXPECT_EQ(three.toString(true), "a@sub/dev;b@dev;c@sub/dev");
    EXPECT_EQ((RecordIdentifierList{{"%1", "%2"}, invalid, {"%2", "%1"}}.toString(false)), "3 records:%2@%1 ... %1@%2");
}

TEST(RecordIdentifierLists, AreComparedAlsoWhereAllHaveOneHash)
{
    RecordIdentifierList list = devicesWithOneRecord(20000);
    EXPECT_FALSE(list.hasDuplicates());
    EXPECT_FALSE(list.add(devicesWithOneRecord(20001)));
    EXPECT_EQ(list.size(), 20001);
    EXPECT_EQ(list.removeDuplicates(), 0);
    EXPECT_EQ(list.countDevices(), 20001);
    EXPECT_EQ(list.removeAll(devicesWithOneRecord(20000)), 20000);
    EXPECT_THAT(list, ElementsAre(RecordIdentifier("20000", "r")));
}

} // namespace
