#include "installation/faults/faulttable.h"

#include <gmock/gmock.h>

using namespace installation::faults;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

/// The faults of a script, told by the numbers of their lines.
class FaultTableTest : public testing::Test
{
protected:
    void take(const char *text) { table.emplace(FaultScript::parsed(text, "x").calls); }
    std::vector<std::string> strikes(const char *role, const char *operation, Elapsed now = 0s)
    {
        std::vector<std::string> lines;
        for (const CallFault &fault : table->strikes(role, operation, now))
            lines.push_back(fault.origin.substr(0, fault.origin.find(' ')));
        return lines;
    }

    std::optional<FaultTable> table;
};

} // namespace

TEST_F(FaultTableTest, StrikesTheOperationThatIsNamed)
{
    take("on getRecord answer 3");
    EXPECT_THAT(strikes("manager", "getRecord"), ElementsAre("x:1:"));
    EXPECT_THAT(strikes("manager", "addHistory"), IsEmpty());
}

TEST_F(FaultTableTest, TellsRolesApart)
{
    take("on manager copyRecord raise TRANSIENT\non recorder copyRecord raise exKorve 3\n");
    EXPECT_THAT(strikes("manager", "copyRecord"), ElementsAre("x:1:"));
    EXPECT_THAT(strikes("recorder", "copyRecord"), ElementsAre("x:2:"));
    EXPECT_THAT(strikes("", "copyRecord"), IsEmpty());
}

TEST_F(FaultTableTest, StrikesAllRolesWhenNoneIsNamed)
{
    take("on copyRecord raise TRANSIENT");
    EXPECT_THAT(strikes("manager", "copyRecord"), ElementsAre("x:1:"));
    EXPECT_THAT(strikes("recorder", "copyRecord"), ElementsAre("x:1:"));
}

TEST_F(FaultTableTest, UsesUpOneLineAfterTheOther)
{
    take("on getRecord answer 1 once\non getRecord answer 2 2 times\non getRecord answer 3\n");
    std::vector<std::string> all;
    for (int call = 0; call < 5; ++call)
        all.push_back(strikes("manager", "getRecord").at(0));
    EXPECT_THAT(all, ElementsAre("x:1:", "x:2:", "x:2:", "x:3:", "x:3:"));
}

TEST_F(FaultTableTest, AddsDelaysUntilSomethingEndsTheCall)
{
    take("on getRecord delay 1s once\non getRecord delay 2s\non getRecord answer 1\non getRecord delay 3s\n");
    EXPECT_THAT(strikes("manager", "getRecord"), ElementsAre("x:1:", "x:2:", "x:3:"));
    EXPECT_THAT(strikes("manager", "getRecord"), ElementsAre("x:2:", "x:3:"));
}

TEST_F(FaultTableTest, StrikesWithinItsTimeAndCountsThereOnly)
{
    take("on getRecord answer 1 from 5s to 6s once");
    EXPECT_THAT(strikes("manager", "getRecord", 4999ms), IsEmpty());
    EXPECT_THAT(strikes("manager", "getRecord", 6s), IsEmpty());
    EXPECT_THAT(strikes("manager", "getRecord", 5s), ElementsAre("x:1:"));
    EXPECT_THAT(strikes("manager", "getRecord", 5s), IsEmpty());
}
