#include "installation/faults/diskfaults.h"

#include <gmock/gmock.h>

#include <cerrno>

using namespace installation::faults;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

std::string nameOf(int error)
{
    switch (error) {
    case 0:
        return "free";
    case ENOSPC:
        return "full";
    case EIO:
        return "defect";
    default:
        return std::to_string(error);
    }
}

/// What happens to the disk of "A", in its order, as "TIME in ms: full", "defect" or "free".
std::vector<std::string> changes(const char *script)
{
    std::string now;
    std::vector<std::string> all;
    for (const FaultSchedule::Event &event : diskEvents(FaultScript::parsed(script, "x").disks, "A",
                                                        [&](int error) { now = nameOf(error); })) {
        event.act();
        all.push_back(std::to_string(event.at.count()) + ": " + now);
    }
    return all;
}

} // namespace

TEST(DiskFaults, FillTheDiskOfTheirDevice)
{
    EXPECT_THAT(changes("disk full on A\n"), ElementsAre("0: full"));
    EXPECT_THAT(changes("disk full on A from 3s to 9s\n"), ElementsAre("3000: full", "9000: free"));
    EXPECT_THAT(changes("disk full on B\n"), IsEmpty());
}

TEST(DiskFaults, FillItForAsLongAsOneOfThemHolds)
{
    EXPECT_THAT(changes("disk full on A from 1s to 5s\ndisk full on A from 3s to 9s\n"),
                ElementsAre("1000: full", "3000: full", "5000: full", "9000: free"));
    EXPECT_THAT(changes("disk full on A\ndisk full on A from 3s to 9s\n"),
                ElementsAre("0: full", "3000: full", "9000: full"));
    EXPECT_THAT(changes("disk full on A from 1s to 2s\ndisk full on A from 2s to 3s\n"),
                ElementsAre("1000: full", "2000: full", "3000: free"));
}

TEST(DiskFaults, BreakItWhereNothingElseHolds)
{
    EXPECT_THAT(changes("disk defect on A from 1s to 5s\n"), ElementsAre("1000: defect", "5000: free"));
    EXPECT_THAT(changes("disk full on A from 2s to 3s\ndisk defect on A from 1s to 5s\n"),
                ElementsAre("1000: defect", "2000: full", "3000: defect", "5000: free"));
}
