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

TEST(Request, IsAboutOneRecord)
{
    const Parsed comment({"record", "comment", "REC1", "R1", "two words \xf0\x9f\x93\xa1"});
    ASSERT_TRUE(comment.line);
    EXPECT_EQ(comment.line->command, Command::RecordComment);
    EXPECT_EQ(comment.line->device, QLatin1String("REC1"));
    EXPECT_EQ(comment.line->record, QLatin1String("R1"));
    EXPECT_EQ(comment.line->text, QString::fromUtf8("two words \xf0\x9f\x93\xa1"));
    EXPECT_TRUE(Parsed({"record", "deletable", "REC1", "R1", "on"}).line->isOn);
    EXPECT_FALSE(Parsed({"record", "deletable", "REC1", "R1", "off"}).line->isOn);
    EXPECT_EQ(Parsed({"record", "history", "remove", "REC1", "R1", "5"}).line->moment.us, 5u);
    EXPECT_EQ(Parsed({"record", "bookmarks", "add", "REC1", "R1", "+1s", ""}).line->command, Command::BookmarksAdd);
}

TEST(Request, CopiesSections)
{
    EXPECT_TRUE(Parsed({"record", "copy", "REC1", "R1"}).line->sections.isEmpty());
    const Parsed copy({"record", "copy", "REC1", "R1", "0:16kB", "1s:", "--name", "parts"});
    ASSERT_TRUE(copy.line);
    ASSERT_EQ(copy.line->sections.size(), 2);
    EXPECT_EQ(copy.line->sections[0].end, (Position{16000, false}));
    EXPECT_EQ(copy.line->sections[1].begin, (Position{1000000, true}));
    EXPECT_EQ(copy.line->name, QLatin1String("parts"));
}

TEST(Request, ReplaysToAnAddress)
{
    const Parsed start({"replay", "start", "REC1", "R1", "--to", "10.0.0.7:9000", "--udp", "--range", "1s:2s", "--count",
                        "0", "--speed", "max"});
    ASSERT_TRUE(start.line);
    EXPECT_EQ(start.line->command, Command::ReplayStart);
    EXPECT_EQ(start.line->link.peer, (Endpoint{QStringLiteral("10.0.0.7"), 9000}));
    EXPECT_TRUE(start.line->link.isUdp);
    EXPECT_EQ(start.line->link.replayCount, 0u);
    EXPECT_TRUE(start.line->link.speed.isUnlimited);
    EXPECT_EQ(start.line->sections.size(), 1);
    EXPECT_FALSE(Parsed({"replay", "start", "REC1", "R1"}).line->link.peer);
    EXPECT_EQ(Parsed({"replay", "status"}).line->command, Command::ReplayStatus);
    EXPECT_EQ(Parsed({"replay", "status", "REC1", "R1"}).line->record, QLatin1String("R1"));
}

TEST(Request, RecordsFromAnAddress)
{
    const Parsed start({"record", "start", "REC1", "a name", "--from", "10.0.0.7:9000", "--rate", "HF_4M",
                        "--sample-rate", "8000", "--format", "DIGITAL_AUDIO", "--loop", "5", "--duration", "60"});
    ASSERT_TRUE(start.line);
    EXPECT_EQ(start.line->command, Command::RecordStart);
    EXPECT_EQ(start.line->name, QLatin1String("a name"));
    EXPECT_EQ(start.line->recording.dataRate, QLatin1String("HF_4M"));
    EXPECT_EQ(start.line->recording.dataFormat, QLatin1String("DIGITAL_AUDIO"));
    EXPECT_EQ(start.line->recording.sampleRateHz, 8000u);
    EXPECT_EQ(start.line->recording.loopMiB, 5u);
    EXPECT_EQ(start.line->recording.durationS, 60u);
    EXPECT_EQ(Parsed({"record", "stop", "7", "--comment", "enough"}).line->text, QLatin1String("enough"));
}

TEST(Request, ShowsSpectraAndExports)
{
    const Parsed spectrum({"spectrum", "REC1", "R1", "--fft", "4096", "--lines", "9", "--window", "kaiser", "--png", "p"});
    ASSERT_TRUE(spectrum.line);
    EXPECT_EQ(spectrum.line->spectrum.fftSize, 4096u);
    EXPECT_EQ(spectrum.line->spectrum.lineCount, 9u);
    EXPECT_EQ(spectrum.line->spectrum.window, QLatin1String("kaiser"));
    EXPECT_EQ(spectrum.line->spectrum.picture, QLatin1String("p"));
    EXPECT_EQ(Parsed({"export", "REC1", "R1", "--to", "folder"}).line->folder, QLatin1String("folder"));
    EXPECT_EQ(Parsed({"watch", "--count", "2"}).line->changeLimit, 2);
}

TEST(Request, IsForTheClockOrAnExplanation)
{
    EXPECT_EQ(Parsed({"time", "get", "REC1"}).line->command, Command::TimeGet);
    EXPECT_EQ(Parsed({"time", "set", "REC1", "now"}).line->moment.kind, Moment::Kind::Now);
    const Parsed errors({"errors", "10012", "--flow", "History"});
    EXPECT_EQ(errors.line->number, 10012u);
    EXPECT_EQ(errors.line->flow, QLatin1String("History"));
}

TEST(Request, MayBeForHelp)
{
    const Parsed parsed({"records", "--help"});
    EXPECT_FALSE(parsed.line);
    EXPECT_EQ(parsed.exitCode, 0);
}

TEST(Request, IsRefusedWithoutMovingTheCursor)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(Parsed({"record", "deletable", "REC1", "R1", "a\n\x1b[31mb"}).exitCode, 1);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::StartsWith("korvectl: SWITCH: a??[31mb not in"));
}

TEST(Request, IsToldWhatATextOfOtherBytesLacks)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(Parsed({"record", "comment", "REC1", "R1", "K\xf6ln"}).exitCode, 1);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::StartsWith("korvectl: TEXT: \"K\uFFFDln\" is not a text in UTF-8\n"));
}

TEST(Request, IsToldWhichSecondsArePossible)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(Parsed({"devices", "--timeout", "nan"}).exitCode, 1);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::StartsWith("korvectl: --timeout: \"nan\" is not a number of seconds from 0.1 to 3600\n"));
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
                                         std::vector<std::string>{"devices", "--timeout", "nan"},
                                         std::vector<std::string>{"watch", "--for", "nan"},
                                         std::vector<std::string>{"tree", "watch", "--for", "inf"},
                                         std::vector<std::string>{"devices", "--subsystem", "\xff"},
                                         std::vector<std::string>{"tree", "get", "/K\xf6ln"},
                                         std::vector<std::string>{"record", "comment", "REC1", "R1", "K\xf6ln"},
                                         std::vector<std::string>{"record", "copy", "REC1", "R1", "--name", "\xff"},
                                         std::vector<std::string>{"record", "stop", "7", "--comment", "\xc3"},
                                         std::vector<std::string>{"export", "REC1", "R1", "--to", "\xfe"},
                                         std::vector<std::string>{"records", "REC1", "REC2"},
                                         std::vector<std::string>{"tree"}, std::vector<std::string>{"tree", "get"},
                                         std::vector<std::string>{"tree", "watch", "--count", "0"},
                                         std::vector<std::string>{"record"}, std::vector<std::string>{"record", "show", "REC1"},
                                         std::vector<std::string>{"record", "show", "REC1", "\xd0\x96"},
                                         std::vector<std::string>{"records", "\xd0\x96"},
                                         std::vector<std::string>{"record", "deletable", "REC1", "R1", "maybe"},
                                         std::vector<std::string>{"record", "copy", "REC1", "R1", "5:3"},
                                         std::vector<std::string>{"record", "history", "remove", "REC1", "R1", "soon"},
                                         std::vector<std::string>{"time", "set", "REC1", "+1s"},
                                         std::vector<std::string>{"replay", "start", "REC1", "R1", "--to", "here:1"},
                                         std::vector<std::string>{"replay", "start", "REC1", "R1", "--udp"},
                                         std::vector<std::string>{"replay", "start", "REC1", "R1", "--speed", "2"},
                                         std::vector<std::string>{"replay", "start", "REC1", "R1", "--count", "-1"},
                                         std::vector<std::string>{"record", "start", "REC1", "name"},
                                         std::vector<std::string>{"record", "start", "REC1", "name", "--from", "1.2.3.4:0"},
                                         std::vector<std::string>{"record", "start", "REC1", "name", "--from", "1.2.3.4:5",
                                                                  "--format", "SPECIAL"},
                                         std::vector<std::string>{"record", "start", "REC1", "name", "--from", "1.2.3.4:5",
                                                                  "--rate", "HF_8M"},
                                         std::vector<std::string>{"record", "bookmarks", "remove", "REC1", "R1",
                                                                  "+18446744073709551615us"},
                                         std::vector<std::string>{"spectrum", "REC1", "R1", "--fft", "2"},
                                         std::vector<std::string>{"spectrum", "REC1", "R1", "--png", ""},
                                         std::vector<std::string>{"export", "REC1", "R1", "--to", ""},
                                         std::vector<std::string>{"spectrum", "REC1", "R1", "--window", "round"},
                                         std::vector<std::string>{"export", "REC1"},
                                         std::vector<std::string>{"errors", "-1"},
                                         std::vector<std::string>{"errors", "1", "--flow", "Nothing"},
                                         std::vector<std::string>{"completion", "fish"}));
