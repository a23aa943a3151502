#include "orbconnection/numbertable.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

using mirror::NumberTable;

namespace
{
TEST(NumberTable, HoldsWhatAMapHoldsThroughEveryChange)
{
    NumberTable<unsigned, int> table;
    std::map<unsigned, int> map;
    std::mt19937 random(1);
    for (int step = 0; step < 20000; ++step) {
        const unsigned key = 1 + random() % 500;
        if (random() % 3) {
            table.insert(key, step);
            map[key] = step;
        } else {
            table.remove(key);
            map.erase(key);
        }
        const unsigned asked = 1 + random() % 500;
        ASSERT_EQ(table.value(asked), map.contains(asked) ? map[asked] : 0);
    }
    for (unsigned key = 1; key <= 500; ++key)
        EXPECT_EQ(table.value(key), map.contains(key) ? map[key] : 0);
}

TEST(NumberTable, KeepsItsEntriesWhenRoomIsReserved)
{
    NumberTable<unsigned, unsigned> table;
    for (const unsigned room : {0u, 1u, 48u, 49u, 5000u, 10u}) {
        table.insert(room + 1, room);
        table.reserve(room);
        for (const unsigned earlier : {0u, 1u, 48u, 49u, 5000u, 10u}) {
            ASSERT_EQ(table.value(earlier + 1), earlier);
            if (earlier == room)
                break;
        }
    }
}

TEST(NumberTable, KeepsItsEntriesWhenItGrows)
{
    NumberTable<unsigned, unsigned> table;
    for (unsigned key = 1; key <= 10000; ++key)
        table.insert(key, key * 3);
    for (unsigned key = 1; key <= 10000; ++key)
        ASSERT_EQ(table.value(key), key * 3);
}

TEST(NumberTable, HasNothingForAnUnknownKey)
{
    NumberTable<const int *, int> table;
    const int place = 0;
    EXPECT_EQ(table.value(&place), 0);
    table.remove(&place);
    table.insert(&place, 7);
    EXPECT_EQ(table.value(&place), 7);
    table.clear();
    EXPECT_EQ(table.value(&place), 0);
}
} // namespace
