#include "installation/program/commandline.h"
#include "tests/support/parsedarguments.h"

#include <gmock/gmock.h>

using namespace installation;

namespace
{

struct Parsed : ParsedArguments<CommandLine> {
    explicit Parsed(std::vector<std::string> arguments) : ParsedArguments("korve-installation", std::move(arguments)) {}
};

} // namespace

TEST(CommandLine, RunsAllRolesByDefault)
{
    const Parsed parsed({});
    ASSERT_TRUE(parsed.line);
    EXPECT_THAT(parsed.line->roles, testing::ElementsAreArray(allRoles));
    EXPECT_FALSE(parsed.line->import);
    EXPECT_FALSE(parsed.line->endsWithParent);
}

TEST(CommandLine, PutsRolesInTheOrderOfStarting)
{
    const Parsed parsed({"--role", "manager", "cco", "--end-with-parent"});
    ASSERT_TRUE(parsed.line);
    EXPECT_THAT(parsed.line->roles, testing::ElementsAre(Role::CentralService, Role::Manager));
    EXPECT_TRUE(parsed.line->endsWithParent);
}

TEST(CommandLine, TakesAFaultScriptThatIsThere)
{
    EXPECT_EQ(Parsed({}).line->faultsFile, QString());
    EXPECT_EQ(Parsed({"--faults", "/etc/hostname"}).line->faultsFile, QLatin1String("/etc/hostname"));
    EXPECT_FALSE(Parsed({"--faults", "/nowhere/x.faults"}).line);
}

TEST(CommandLine, TakesAnImport)
{
    const Parsed parsed({"--state", "/tmp", "import", "REC1", "a.wav", "b.wav"});
    ASSERT_TRUE(parsed.line && parsed.line->import);
    EXPECT_EQ(parsed.line->import->device, QLatin1String("REC1"));
    EXPECT_EQ(parsed.line->import->files, QList<QByteArray>({"a.wav", "b.wav"}));
    EXPECT_EQ(parsed.line->stateFolder, QLatin1String("/tmp"));
}

TEST(CommandLine, TakesNoEmptyNameForAnImport)
{
    EXPECT_EQ(Parsed({"import", "", "a.wav"}).exitCode, 1);
    EXPECT_EQ(Parsed({"import", "REC1", "a.wav", ""}).exitCode, 1);
}

TEST(CommandLine, IsRefusedByTheProgramWithoutMovingTheCursor)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(Parsed({"--role", "a\n\x1b[31mb"}).exitCode, 1);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::StartsWith("korve-installation: --role: a??[31mb not in"));
}

TEST(CommandLine, LeavesTheOptionsOfTheOrbAlone)
{
    EXPECT_TRUE(Parsed({"-ORBtraceLevel", "1", "--role", "cco"}).line);
}

struct HelpCase {
    const char *name;
    std::vector<std::string> arguments;
    std::vector<std::string> words;
};

class Help : public testing::TestWithParam<HelpCase>
{
};

TEST_P(Help, NamesWhatCanBeGiven)
{
    testing::internal::CaptureStdout();
    const Parsed parsed(GetParam().arguments);
    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_FALSE(parsed.line);
    EXPECT_EQ(parsed.exitCode, 0);
    for (const std::string &word : GetParam().words)
        EXPECT_NE(text.find(word), std::string::npos) << word << " is not in\n" << text;
}

INSTANTIATE_TEST_SUITE_P(Commands, Help,
                         testing::Values(HelpCase{"Program", {"--help"}, {"--role", "cco", "recorder", "manager",
                                                                          "--config", "--state", "import", "KORVE_CCO"}},
                                         HelpCase{"Version", {"--version"}, {"korve-installation "}},
                                         HelpCase{"Import", {"import", "--help"}, {"DEVICE", "FILE", "WAV", "SigMF"}}),
                         [](const auto &info) { return std::string(info.param.name); });

class WrongLine : public testing::TestWithParam<std::vector<std::string>>
{
};

TEST_P(WrongLine, IsRefused)
{
    const Parsed parsed(GetParam());
    EXPECT_FALSE(parsed.line);
    EXPECT_EQ(parsed.exitCode, 1);
}

INSTANTIATE_TEST_SUITE_P(Lines, WrongLine,
                         testing::Values(std::vector<std::string>{"--role", "archive"},
                                         std::vector<std::string>{"--config", "/there/is/no/such.ini"},
                                         std::vector<std::string>{"import"}, std::vector<std::string>{"import", "REC1"},
                                         std::vector<std::string>{"--unknown"}, std::vector<std::string>{"export"}));
