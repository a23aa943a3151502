#include "apps/korvectl/commandline.h"
#include "tests/support/parsedarguments.h"

#include <gmock/gmock.h>

using namespace korvectl;

namespace
{

struct Parsed : ParsedArguments<CommandLine> {
    explicit Parsed(std::vector<std::string> arguments) : ParsedArguments("korvectl", std::move(arguments)) {}
};

class WrongRequest : public testing::TestWithParam<std::vector<std::string>>
{
};

} // namespace

TEST(Request, AsksTheLocalSubsystemQuietlyForATable)
{
    const Parsed parsed({"devices"});
    ASSERT_TRUE(parsed.line);
    EXPECT_EQ(parsed.line->command, Command::Devices);
    EXPECT_TRUE(parsed.line->subsystem.isEmpty());
    EXPECT_EQ(parsed.line->timeout, std::chrono::seconds(5));
    EXPECT_FALSE(parsed.line->json);
    EXPECT_EQ(parsed.line->traceMask, 0u);
}

TEST(Request, TakesOptionsOnBothSidesOfTheCommand)
{
    const Parsed parsed({"--subsystem", "West", "records", "REC1", "--json", "--timeout", "0.5"});
    ASSERT_TRUE(parsed.line);
    EXPECT_EQ(parsed.line->command, Command::Records);
    EXPECT_EQ(parsed.line->device, QLatin1String("REC1"));
    EXPECT_EQ(parsed.line->subsystem, QLatin1String("West"));
    EXPECT_EQ(parsed.line->timeout, std::chrono::milliseconds(500));
    EXPECT_TRUE(parsed.line->json);
}

TEST(Request, TracesMoreWithEachV)
{
    EXPECT_EQ(Parsed({"devices", "-v"}).line->traceMask, 32u);
    EXPECT_EQ(Parsed({"devices", "-vv"}).line->traceMask, 96u);
}

TEST(Request, LooksAtTheTree)
{
    EXPECT_EQ(Parsed({"tree", "ls"}).line->command, Command::TreeList);
    EXPECT_EQ(Parsed({"tree", "ls"}).line->path, QLatin1String("/"));
    EXPECT_TRUE(Parsed({"tree", "ls", "-r", "/KORVE"}).line->recursive);
    const Parsed get({"tree", "get", "/KORVE/K\xc3\xb6ln Ost", "--json"});
    EXPECT_EQ(get.line->command, Command::TreeGet);
    EXPECT_EQ(get.line->path, QStringLiteral("/KORVE/K\u00f6ln Ost"));
    EXPECT_TRUE(get.line->json);
}

TEST(Request, WatchesForGoodUnlessToldOtherwise)
{
    const Parsed forGood({"tree", "watch", "/KORVE"});
    EXPECT_EQ(forGood.line->command, Command::TreeWatch);
    EXPECT_EQ(forGood.line->watchTime.count(), 0);
    EXPECT_EQ(forGood.line->changeLimit, 0);
    const Parsed bounded({"tree", "watch", "--for", "1.5", "--count", "3"});
    EXPECT_EQ(bounded.line->watchTime, std::chrono::milliseconds(1500));
    EXPECT_EQ(bounded.line->changeLimit, 3);
}

TEST(Request, FollowsRecordsWhenToldTo)
{
    EXPECT_FALSE(Parsed({"records"}).line->follow);
    EXPECT_TRUE(Parsed({"records", "--follow", "REC1"}).line->follow);
}

TEST(Request, MayBeForHelp)
{
    const Parsed parsed({"records", "--help"});
    EXPECT_FALSE(parsed.line);
    EXPECT_EQ(parsed.exitCode, 0);
}

TEST_P(WrongRequest, IsAMatterOfUsage)
{
    const Parsed parsed(GetParam());
    EXPECT_FALSE(parsed.line);
    EXPECT_EQ(parsed.exitCode, 1);
}

INSTANTIATE_TEST_SUITE_P(Lines, WrongRequest,
                         testing::Values(std::vector<std::string>{}, std::vector<std::string>{"device"},
                                         std::vector<std::string>{"devices", "REC1"},
                                         std::vector<std::string>{"devices", "records"},
                                         std::vector<std::string>{"devices", "--follow"},
                                         std::vector<std::string>{"devices", "--timeout", "0"},
                                         std::vector<std::string>{"devices", "--timeout", "soon"},
                                         std::vector<std::string>{"records", "REC1", "REC2"},
                                         std::vector<std::string>{"tree"}, std::vector<std::string>{"tree", "get"},
                                         std::vector<std::string>{"tree", "watch", "--count", "0"},
                                         std::vector<std::string>{"completion", "fish"}));
