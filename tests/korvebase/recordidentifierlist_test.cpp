#include "korvebase/recordidentifierlist.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <type_traits>
#include <vector>

using korve::RecordIdentifier;
using korve::RecordIdentifierList;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
/// "R@S/D" or "R@D", as an identifier prints itself; "" is one without device and record.
RecordIdentifier id(const char *text)
{
    const QString whole = QString::fromUtf8(text);
    const QString place = whole.section(u'@', 1);
    if (!place.contains(u'/'))
        return RecordIdentifier(place, whole.section(u'@', 0, 0));
    return RecordIdentifier(place.section(u'/', 0, 0), place.section(u'/', 1), whole.section(u'@', 0, 0));
}

/// Elements as they are, twice or not.
RecordIdentifierList listOf(const std::vector<const char *> &texts)
{
    RecordIdentifierList list;
    for (const char *const text : texts)
        list.append(id(text));
    return list;
}

std::vector<std::string> texts(const RecordIdentifierList &list)
{
    std::vector<std::string> all;
    for (const RecordIdentifier &one : list)
        all.push_back(one.toString().toStdString());
    return all;
}

/// Without the order of a hash set.
std::vector<std::string> sorted(const QStringList &names)
{
    std::vector<std::string> all;
    for (const QString &name : names)
        all.push_back(name.toStdString());
    std::sort(all.begin(), all.end());
    return all;
}

const QString north = QStringLiteral("North");
const QString d1 = QStringLiteral("D1");
const QString r1 = QStringLiteral("R1");

/// North with two devices, South with one of the same name, and one device without subsystem.
class RecordList : public testing::Test
{
protected:
    const RecordIdentifierList sample =
        listOf({"R1@North/D1", "R2@North/D1", "R1@North/D2", "R1@South/D1", "R3@D1", "R1@North/D1"});
    const std::function<bool(const RecordIdentifier &)> isR1 = [](const RecordIdentifier &one) {
        return one.recordID() == r1;
    };
};

TEST(RecordListAdding, AppendsWhatIsNew)
{
    RecordIdentifierList list;
    EXPECT_TRUE(list.add(id("R1@North/D1")));
    EXPECT_FALSE(list.add(id("R1@North/D1")));
    EXPECT_TRUE(list.add(north, QStringLiteral("D2"), r1));
    EXPECT_FALSE(list.add(north, QStringLiteral("D2"), r1));
    EXPECT_TRUE(list.add(d1, r1));
    EXPECT_FALSE(list.add(QString(), d1, r1));
    EXPECT_THAT(texts(list), ElementsAre("R1@North/D1", "R1@North/D2", "R1@D1"));
}

TEST(RecordListAdding, AppendsTheNewOnesOfAList)
{
    RecordIdentifierList list = listOf({"R1@D1", "R2@D1"});
    EXPECT_TRUE(list.add(listOf({"R3@D1", "R4@D1"})));
    EXPECT_FALSE(list.add(listOf({"R5@D1", "R2@D1", "R6@D1"})));
    EXPECT_FALSE(list.add(listOf({"R1@D1"})));
    EXPECT_THAT(texts(list), ElementsAre("R1@D1", "R2@D1", "R3@D1", "R4@D1", "R5@D1", "R6@D1"));
}

TEST(RecordListAdding, OfAnEmptyListIsASuccess)
{
    RecordIdentifierList list = listOf({"R1@D1"});
    EXPECT_TRUE(list.add(RecordIdentifierList()));
    EXPECT_THAT(texts(list), ElementsAre("R1@D1"));
    RecordIdentifierList none;
    EXPECT_TRUE(none.add(RecordIdentifierList()));
    EXPECT_TRUE(none.add(none));
}

TEST(RecordListAdding, TakesAnElementOnceThatTheOtherListHoldsTwice)
{
    RecordIdentifierList list;
    EXPECT_FALSE(list.add(listOf({"R1@D1", "R2@D1", "R1@D1"})));
    EXPECT_THAT(texts(list), ElementsAre("R1@D1", "R2@D1"));
}

TEST(RecordListAdding, OfTheListToItselfChangesNothing)
{
    RecordIdentifierList list = listOf({"R1@D1", "R2@D1"});
    EXPECT_FALSE(list.add(list));
    EXPECT_FALSE((list << list).isEmpty());
    EXPECT_THAT(texts(list), ElementsAre("R1@D1", "R2@D1"));
}

TEST(RecordListAdding, LeavesDuplicatesThatWereThere)
{
    RecordIdentifierList list = listOf({"R1@D1", "R1@D1"});
    EXPECT_TRUE(list.add(listOf({"R2@D1"})));
    EXPECT_THAT(texts(list), ElementsAre("R1@D1", "R1@D1", "R2@D1"));
}

TEST(RecordListAdding, ByShiftNeverMakesADuplicate)
{
    RecordIdentifierList list;
    RecordIdentifierList &result = list << id("R1@D1") << id("R1@D1") << listOf({"R1@D1", "R2@D1"}) << id("R3@D1");
    EXPECT_EQ(&result, &list);
    EXPECT_THAT(texts(list), ElementsAre("R1@D1", "R2@D1", "R3@D1"));
}

TEST(RecordListAdding, ByTheListsOwnMeansAllowsDuplicates)
{
    RecordIdentifierList list = listOf({"R1@D1"});
    list.append(id("R1@D1"));
    list += id("R1@D1");
    EXPECT_EQ(list.size(), 3);
    list.prepend(id("R2@D1"));
    EXPECT_THAT(texts(list), ElementsAre("R2@D1", "R1@D1", "R1@D1", "R1@D1"));
}

TEST(RecordListAdding, LeavesACopyAsItWas)
{
    const RecordIdentifierList before = listOf({"R1@D1"});
    RecordIdentifierList list = before;
    EXPECT_TRUE(list.add(listOf({"R2@D1"})));
    EXPECT_FALSE(list.add(before));
    EXPECT_THAT(texts(before), ElementsAre("R1@D1"));
    EXPECT_THAT(texts(list), ElementsAre("R1@D1", "R2@D1"));
}

/// The record "R" on very many devices: all have one hash.
RecordIdentifierList devicesWithOneRecord(int count)
{
    RecordIdentifierList list;
    for (int device = 0; device < count; ++device)
        list.append(RecordIdentifier(QString::number(device), QStringLiteral("R")));
    return list;
}

TEST(RecordListOfOneRecord, IsWorkedOnThoughAllHaveOneHash)
{
    RecordIdentifierList list = devicesWithOneRecord(20000);
    EXPECT_FALSE(list.hasDuplicates());
    EXPECT_FALSE(list.add(devicesWithOneRecord(20001)));
    EXPECT_EQ(list.size(), 20001);
    EXPECT_EQ(list.removeDuplicates(), 0);
    EXPECT_EQ(list.countDevices(), 20001);
    EXPECT_EQ(list.removeAll(devicesWithOneRecord(20000)), 20000);
    EXPECT_THAT(texts(list), ElementsAre("R@20000"));
}

TEST_F(RecordList, IsAListAndCopiedAsOne)
{
    EXPECT_TRUE((std::is_base_of_v<QList<RecordIdentifier>, RecordIdentifierList>));
    EXPECT_EQ(sizeof(RecordIdentifierList), sizeof(QList<RecordIdentifier>));
    RecordIdentifierList copy(sample);
    RecordIdentifierList assigned;
    assigned = sample;
    EXPECT_EQ(copy, sample);
    EXPECT_EQ(assigned, sample);
    copy.removeFirst();
    EXPECT_EQ(sample.size(), 6);
    EXPECT_EQ(copy.size(), 5);
}

TEST_F(RecordList, OffersTheQueriesOfAListBesideItsOwn)
{
    EXPECT_EQ(sample.count(), 6);
    EXPECT_EQ(sample.count(id("R1@North/D1")), 2);
    EXPECT_TRUE(sample.contains(id("R3@D1")));
    EXPECT_FALSE(sample.contains(id("R3@North/D1")));
    RecordIdentifierList list = sample;
    EXPECT_EQ(list.indexOf(id("R3@D1")), 4);
    list.append(QList<RecordIdentifier>{id("R3@D1")});
    EXPECT_EQ(list.removeAll(id("R1@North/D1")), 2);
    EXPECT_EQ(list.size(), 5);
    EXPECT_THAT(texts(RecordIdentifierList(list.mid(3))), ElementsAre("R3@D1", "R3@D1"));
}

TEST_F(RecordList, FindsRecordsByTheirIdAlone)
{
    EXPECT_TRUE(sample.contains(r1));
    EXPECT_FALSE(sample.contains(QStringLiteral("r1")));
    EXPECT_EQ(sample.count(r1), 4);
    EXPECT_EQ(sample.count(QStringLiteral("R4")), 0);
    EXPECT_THAT(texts(sample.find(r1)), ElementsAre("R1@North/D1", "R1@North/D2", "R1@South/D1", "R1@North/D1"));
    EXPECT_THAT(texts(sample.find(QStringLiteral("R4"))), IsEmpty());
}

TEST_F(RecordList, AsksAPredicate)
{
    EXPECT_TRUE(sample.contains(isR1));
    EXPECT_TRUE(sample.contains([](const RecordIdentifier &one) { return one.subSystem().isEmpty(); }));
    EXPECT_FALSE(sample.contains([](const RecordIdentifier &one) { return !one.valid(); }));
    EXPECT_FALSE(RecordIdentifierList().contains(isR1));
}

TEST_F(RecordList, IsFilteredInItsOrder)
{
    EXPECT_THAT(texts(sample.filter(north)), ElementsAre("R1@North/D1", "R2@North/D1", "R1@North/D2", "R1@North/D1"));
    EXPECT_THAT(texts(sample.filter(QString())), ElementsAre("R3@D1"));
    EXPECT_THAT(texts(sample.filter(north, d1)), ElementsAre("R1@North/D1", "R2@North/D1", "R1@North/D1"));
    EXPECT_THAT(texts(sample.filter(QStringLiteral("South"), QStringLiteral("D2"))), IsEmpty());
    EXPECT_EQ(texts(sample.filter(isR1)), texts(sample.find(r1)));
}

TEST_F(RecordList, NamesSubsystemsDevicesAndRecordsOnce)
{
    EXPECT_THAT(sorted(sample.subSystems()), ElementsAre("", "North", "South"));
    EXPECT_EQ(sample.countSubSystems(), 3);
    EXPECT_THAT(sorted(sample.deviceIDs(north)), ElementsAre("D1", "D2"));
    EXPECT_EQ(sample.countDeviceIDs(north), 2);
    EXPECT_THAT(sorted(sample.deviceIDs(QString())), ElementsAre("D1"));
    EXPECT_THAT(sorted(sample.deviceIDs(QStringLiteral("West"))), IsEmpty());
    EXPECT_EQ(sample.countDeviceIDs(QStringLiteral("West")), 0);
    EXPECT_THAT(sorted(sample.recordIDs(north, d1)), ElementsAre("R1", "R2"));
    EXPECT_THAT(sorted(sample.recordIDs(QStringLiteral("South"), QStringLiteral("D2"))), IsEmpty());
}

TEST_F(RecordList, CountsADeviceOnceInEachSubsystem)
{
    EXPECT_EQ(sample.countDevices(), 4);
    EXPECT_EQ(listOf({"R1@North/D1", "R1@South/D1"}).countDevices(), 2);
    EXPECT_EQ(RecordIdentifierList().countDevices(), 0);
    EXPECT_EQ(RecordIdentifierList().countSubSystems(), 0);
}

TEST(RecordListSorting, OrdersByTheLastPartThatDiffers)
{
    RecordIdentifierList list = listOf({"R3@North/D1", "R1@North/D1", "R2@North/D1", "R1@North/D1"});
    list.sort();
    EXPECT_THAT(texts(list), ElementsAre("R1@North/D1", "R1@North/D1", "R2@North/D1", "R3@North/D1"));
    RecordIdentifierList devices = listOf({"R1@North/D3", "R1@North/D1", "R1@North/D2"});
    devices.sort();
    EXPECT_THAT(texts(devices), ElementsAre("R1@North/D1", "R1@North/D2", "R1@North/D3"));
    RecordIdentifierList none;
    none.sort();
    EXPECT_THAT(texts(none), IsEmpty());
}

/// Whether sorting leaves what there was, in whatever order.
bool keepsAllWhenSorted(RecordIdentifierList list)
{
    auto before = texts(list);
    list.sort();
    auto after = texts(list);
    std::sort(before.begin(), before.end());
    std::sort(after.begin(), after.end());
    return after == before;
}

TEST(RecordListSorting, KeepsAllElementsWhenTheOrderContradictsItself)
{
    std::mt19937 random(1);
    RecordIdentifierList list;
    const auto letter = [&random] { return QString(QLatin1Char(static_cast<char>('a' + random() % 5))); };
    for (int i = 0; i < 2000; ++i)
        list.append(RecordIdentifier(letter(), letter(), letter()));
    EXPECT_TRUE(keepsAllWhenSorted(list));
}

TEST(RecordListSorting, StaysWithinTheListWhenEachElementIsLessThanEachOther)
{
    RecordIdentifierList list;
    for (int i = 0; i < 500; ++i)
        list.append(RecordIdentifier(QString::number(1000 + i), QString::number(1999 - i), r1));
    ASSERT_TRUE(list.first() < list.last() && list.last() < list.first());
    EXPECT_TRUE(keepsAllWhenSorted(list));
}

TEST(RecordListDuplicates, AreSeenAndRemovedBehindTheFirst)
{
    RecordIdentifierList list = listOf({"R1@D1", "R2@D1", "R1@D1"});
    EXPECT_TRUE(list.hasDuplicates());
    EXPECT_EQ(list.removeDuplicates(), 1);
    EXPECT_THAT(texts(list), ElementsAre("R1@D1", "R2@D1"));
    EXPECT_FALSE(list.hasDuplicates());
    EXPECT_EQ(list.removeDuplicates(), 0);
    EXPECT_FALSE(listOf({"R1@North/D1", "R1@South/D1"}).hasDuplicates()); // equal hashes
    EXPECT_FALSE(RecordIdentifierList().hasDuplicates());
}

TEST(RecordListDuplicates, OfManyAreCounted)
{
    RecordIdentifierList list = listOf({"R3@D1", "R1@D1", "R3@D1", "R2@D1", "R1@D1", "R3@D1"});
    EXPECT_EQ(list.removeDuplicates(), 3);
    EXPECT_THAT(texts(list), ElementsAre("R3@D1", "R1@D1", "R2@D1"));
}

TEST(RecordListInvalid, IdentifiersAreSeenAndRemoved)
{
    RecordIdentifierList list = listOf({"R1@D1", "R2@", "R3@D1", "@D1", ""});
    EXPECT_TRUE(list.hasInvalidIDs());
    EXPECT_EQ(list.removeInvalidIDs(), 3);
    EXPECT_THAT(texts(list), ElementsAre("R1@D1", "R3@D1"));
    EXPECT_FALSE(list.hasInvalidIDs());
    EXPECT_EQ(list.removeInvalidIDs(), 0);
    EXPECT_FALSE(RecordIdentifierList().hasInvalidIDs());
}

TEST_F(RecordList, LosesWhatAnotherListHolds)
{
    RecordIdentifierList list = sample;
    EXPECT_EQ(list.removeAll(listOf({"R1@North/D1", "R3@D1", "R9@D9", "R1@North/D1"})), 3);
    EXPECT_THAT(texts(list), ElementsAre("R2@North/D1", "R1@North/D2", "R1@South/D1"));
    EXPECT_EQ(list.removeAll(RecordIdentifierList()), 0);
    EXPECT_EQ(list.removeAll(list), 3);
    EXPECT_TRUE(list.isEmpty());
}

TEST_F(RecordList, LosesARecordOnAllDevices)
{
    RecordIdentifierList list = sample;
    EXPECT_EQ(list.removeAll(r1), 4);
    EXPECT_THAT(texts(list), ElementsAre("R2@North/D1", "R3@D1"));
    EXPECT_EQ(list.removeAll(r1), 0);
}

struct TextCase {
    const char *name;
    std::vector<const char *> ids;
    const char *complete;
    const char *shortened;
};

void PrintTo(const TextCase &text, std::ostream *out)
{
    *out << text.name;
}

class RecordListText : public testing::TestWithParam<TextCase>
{
};

INSTANTIATE_TEST_SUITE_P(
    Sizes, RecordListText,
    testing::Values(
        TextCase{"None", {}, "", ""}, TextCase{"One", {"R1@N/D1"}, "R1@N/D1", "R1@N/D1"},
        TextCase{"Two", {"R1@N/D1", "R2@D1"}, "R1@N/D1;R2@D1", "R1@N/D1;R2@D1"},
        TextCase{"Three", {"R1@N/D1", "R2@D1", "R3@D1"}, "R1@N/D1;R2@D1;R3@D1", "3 records:R1@N/D1 ... R3@D1"},
        TextCase{"Invalid", {"", "R2@D1", "R3@"}, "[invalid];R2@D1;[invalid]", "3 records:[invalid] ... [invalid]"},
        TextCase{
            "Marks", {"%1@%2", "R2@D1", "%3@D1", "%2@%1"}, "%1@%2;R2@D1;%3@D1;%2@%1", "4 records:%1@%2 ... %2@%1"}),
    [](const auto &info) { return info.param.name; });

TEST_P(RecordListText, NamesAllOrTheEnds)
{
    EXPECT_EQ(listOf(GetParam().ids).toString(true).toStdString(), GetParam().complete);
    EXPECT_EQ(listOf(GetParam().ids).toString(false).toStdString(), GetParam().shortened);
}
} // namespace
