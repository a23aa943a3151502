#include "installation/cco/namepath.h"

#include <gtest/gtest.h>

using namespace installation;

namespace
{

struct PathCase {
    const char *label;
    const char *path;
    const char *subsystem;
    const char *name;
};

class NamePathOf : public testing::TestWithParam<PathCase>
{
};

TEST_P(NamePathOf, IsTakenApart)
{
    const auto parsed = parseNamePath(GetParam().path);
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->subsystem, GetParam().subsystem);
    EXPECT_EQ(parsed->name, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, NamePathOf,
    testing::Values(PathCase{"Bare", "KorveManager/VTConnect", "", "KorveManager/VTConnect"},
                    PathCase{"BareBelowServices", "CentralServices/A/B", "", "A/B"},
                    PathCase{"Local", "CCO/LocalSystem/LocalSubSystem/CentralServices/A/B", "", "A/B"},
                    PathCase{"LocalAsAName", "CCO/LocalSystem/SubSystems/LocalSubSystem/CentralServices/A/B", "",
                             "A/B"},
                    PathCase{"Named", "CCO/LocalSystem/SubSystems/North/CentralServices/A/B", "North", "A/B"},
                    PathCase{"NamedWithoutServices", "CCO/LocalSystem/SubSystems/North/A", "North", "A"},
                    PathCase{"Folder", "CCO/LocalSystem/LocalSubSystem/CentralServices/A/", "", "A/"},
                    PathCase{"WholeSubsystem", "CCO/LocalSystem/SubSystems/North/", "North", ""},
                    PathCase{"Empty", "", "", ""}),
    [](const auto &info) { return std::string(info.param.label); });

struct WrongPathCase {
    const char *label;
    const char *path;
};

class NoNamePath : public testing::TestWithParam<WrongPathCase>
{
};

TEST_P(NoNamePath, LeadsNowhere)
{
    EXPECT_FALSE(parseNamePath(GetParam().path));
}

INSTANTIATE_TEST_SUITE_P(Forms, NoNamePath,
                         testing::Values(WrongPathCase{"SystemAlone", "CCO/LocalSystem/"},
                                         WrongPathCase{"LocalAlone", "CCO/LocalSystem/LocalSubSystem"},
                                         WrongPathCase{"Elsewhere", "CCO/LocalSystem/Elsewhere/A"},
                                         WrongPathCase{"SubsystemsAlone", "CCO/LocalSystem/SubSystems/"},
                                         WrongPathCase{"NamedAlone", "CCO/LocalSystem/SubSystems/North"},
                                         WrongPathCase{"NoSubsystem", "CCO/LocalSystem/SubSystems//A"}),
                         [](const auto &info) { return std::string(info.param.label); });

TEST(FullPath, LeadsBackToTheSameName)
{
    const NamePath foreign{"North", "A/B"};
    EXPECT_EQ(fullPath(foreign), "CCO/LocalSystem/SubSystems/North/CentralServices/A/B");
    EXPECT_EQ(fullPath({"", "A/"}), "CCO/LocalSystem/LocalSubSystem/CentralServices/A/");
}

TEST(SubsystemNames, AreComparedWithoutCase)
{
    EXPECT_TRUE(sameName("North", "nORTH"));
    EXPECT_FALSE(sameName("North", "Nort"));
}

} // namespace
