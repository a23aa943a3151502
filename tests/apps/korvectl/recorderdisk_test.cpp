#include "apps/korvectl/recorderdisk.h"

#include <gtest/gtest.h>

using namespace korvectl;

namespace
{

QString namesOfFirst(int count)
{
    QVector<RefusedFile> files;
    for (int number = 1; number <= count; ++number)
        files << RefusedFile{QStringLiteral("f%1").arg(number), QStringLiteral("cut")};
    return namesOf(files);
}

bool hasRoomWith(quint64 freeBytes)
{
    TQ_KORVE::struMASS_STORE_STATUS storage{};
    storage.totalSize = 1'000'000'000'000;
    storage.freeSize = freeBytes;
    return hasRoom(storage);
}

} // namespace

TEST(RefusedFiles, AreNamedUpToThree)
{
    EXPECT_EQ(namesOfFirst(1), QLatin1String("f1 (cut)"));
    EXPECT_EQ(namesOfFirst(3), QLatin1String("f1 (cut), f2 (cut), f3 (cut)"));
    EXPECT_EQ(namesOfFirst(5), QLatin1String("f1 (cut), f2 (cut), f3 (cut) and 2 more"));
}

TEST(RecorderDisk, HasRoomForASecondAtLeast)
{
    EXPECT_FALSE(hasRoomWith(0));
    EXPECT_FALSE(hasRoomWith(15'999'999));
    EXPECT_TRUE(hasRoomWith(16'000'000));
}
