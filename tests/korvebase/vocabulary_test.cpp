#include "korvebase/valuenames.h"
#include "korvebase/valuetreepaths.h"

#include <gtest/gtest.h>

namespace
{
// Both sides of a connection spell them so; who repairs one of them is not understood any more.
TEST(Vocabulary, KeepsItsOddSpellings)
{
    EXPECT_EQ(korve::name::LoadedCompletly, QLatin1String("LoadedCompletly"));
    EXPECT_EQ(korve::name::TovalSWVersion, QLatin1String("TovalSWVersion"));
    EXPECT_EQ(korve::name::toBeDefined, QLatin1String("*** TO BE DEFINED !!! ***"));
    EXPECT_EQ(korve::path::recordsLoadedCompletly, QLatin1String("/Records/LoadedCompletly"));
    EXPECT_EQ(korve::path::archvieCmdResult, QLatin1String("/ArchvieCmdResult"));
}

TEST(Vocabulary, NamesTheManagerAtTheCentralService)
{
    EXPECT_EQ(korve::path::managerInterface, QLatin1String("/CentralServices/KorveManager/IF_KRV_c_KRV"));
    EXPECT_EQ(korve::path::localSystem, QLatin1String("CCO/LocalSystem/"));
    EXPECT_EQ(korve::path::valueTreeConnection, QLatin1String("KorveManager/VTConnect"));
    EXPECT_EQ(korve::name::LocalSubSystem, QLatin1String("LocalSubSystem"));
}
} // namespace
