#include "korvebase/identifierindex.h"

#include "korvebase/recordidentifierlist.h"

#include <gtest/gtest.h>

#include <random>

using korve::IdentifierIndex;
using korve::RecordIdentifier;
using korve::RecordIdentifierList;

namespace
{

/// Few different identifiers, so that many meet.
RecordIdentifierList mixed(int size, unsigned seed)
{
    std::mt19937 random(seed);
    const auto word = [&](unsigned count) { return QString::number(random() % count); };
    RecordIdentifierList list;
    for (int i = 0; i < size; ++i)
        list.append(RecordIdentifier(word(3), word(7), word(11)));
    return list;
}

TEST(AnIdentifierIndex, HasNothingWithoutRoom)
{
    const IdentifierIndex index(0);
    EXPECT_EQ(index.size(), 0);
    EXPECT_EQ(index.find(RecordIdentifier("d", "r")), -1);
}

TEST(AnIdentifierIndex, NumbersDifferentOnesAsTheyCome)
{
    const RecordIdentifierList list{{"d", "r1"}, {"d", "r2"}, {"d", "r1"}, {"s", "d", "r1"}};
    IdentifierIndex index(list.size());
    EXPECT_TRUE(index.insert(list.at(0)));
    EXPECT_TRUE(index.insert(list.at(1)));
    EXPECT_FALSE(index.insert(list.at(2)));
    EXPECT_TRUE(index.insert(list.at(3)));
    EXPECT_EQ(index.size(), 3);
    EXPECT_EQ(index.find(RecordIdentifier("d", "r1")), 0);
    EXPECT_EQ(index.find(RecordIdentifier("s", "d", "r1")), 2);
    EXPECT_EQ(&index[1], &list.at(1));
    EXPECT_EQ(index.find(RecordIdentifier("r1", "d")), -1);
}

TEST(AnIdentifierIndex, FindsWhatASearchFinds)
{
    const RecordIdentifierList others = mixed(300, 2);
    for (int size = 0; size < 400; size += 7) {
        const RecordIdentifierList list = mixed(size, 1);
        IdentifierIndex index(size);
        for (int place = 0; place < size; ++place)
            EXPECT_EQ(index.insert(list.at(place)), list.indexOf(list.at(place)) == place);
        for (const RecordIdentifier &other : others)
            EXPECT_EQ(index.find(other) >= 0, list.contains(other));
    }
}

TEST(ListsOfIdentifiers, AreAddedAndThinnedAsByTheSlowWay)
{
    for (int size = 0; size < 400; size += 7) {
        RecordIdentifierList list = mixed(size / 3, 1);
        RecordIdentifierList slow = list;
        for (const RecordIdentifier &each : mixed(size, 2))
            slow.add(each);
        list.add(mixed(size, 2));
        EXPECT_EQ(list, slow) << size;

        RecordIdentifierList different;
        for (const RecordIdentifier &each : qAsConst(list))
            different.add(each);
        EXPECT_EQ(list.hasDuplicates(), list.size() != different.size());
        list.removeDuplicates();
        EXPECT_EQ(list, different) << size;
    }
}

} // namespace
