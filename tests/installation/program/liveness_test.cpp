#include "tests/installation/program/installationfixture.h"

#include "installation/cco/liveness.h"

namespace
{

using Liveness = InstallationFixture;
using installation::Answer;
using installation::askObject;

} // namespace

TEST_F(Liveness, IsThatOfAnObjectThatServesAgain)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    const TQ_KRV::IF_KRV_c_KRV_var found = manager();
    ASSERT_EQ(askObject(found, std::chrono::seconds(10)), Answer::Lives);
    shared->manager->kill();
    EXPECT_EQ(askObject(found, std::chrono::seconds(10)), Answer::Gone);
    shared->manager = start("manager");
    EXPECT_EQ(askObject(found, std::chrono::seconds(10)), Answer::Lives);
}

TEST_F(Liveness, IsSeenPastConnectionsToAFormerProcess)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    const TQ_KRV::IF_KRV_c_KRV_var found = manager();
    ASSERT_EQ(askObject(found, std::chrono::seconds(10)), Answer::Lives);
    shared->manager->kill();
    shared->manager = start("manager");
    EXPECT_EQ(askObject(found, std::chrono::seconds(10)), Answer::Lives);
}
