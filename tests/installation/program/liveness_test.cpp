#include "tests/installation/program/installationfixture.h"

#include "installation/cco/liveness.h"

namespace
{

using Liveness = InstallationFixture;
using installation::objectAnswers;

} // namespace

TEST_F(Liveness, IsThatOfAnObjectThatServesAgain)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    const TQ_KRV::IF_KRV_c_KRV_var found = manager();
    ASSERT_TRUE(objectAnswers(found, std::chrono::seconds(10)));
    shared->manager->kill();
    EXPECT_FALSE(objectAnswers(found, std::chrono::seconds(10)));
    shared->manager = start("manager");
    EXPECT_TRUE(objectAnswers(found, std::chrono::seconds(10)));
}

TEST_F(Liveness, IsSeenPastConnectionsToAFormerProcess)
{
    ASSERT_TRUE(managerKnowsTheDevice());
    const TQ_KRV::IF_KRV_c_KRV_var found = manager();
    ASSERT_TRUE(objectAnswers(found, std::chrono::seconds(10)));
    shared->manager->kill();
    shared->manager = start("manager");
    EXPECT_TRUE(objectAnswers(found, std::chrono::seconds(10)));
}
