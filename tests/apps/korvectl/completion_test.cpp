#include "apps/korvectl/completion.h"
#include "apps/korvectl/shellwords.h"

#include <gmock/gmock.h>

using namespace korvectl;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

namespace
{

Completion completed(const char *line)
{
    Description description;
    return complete(description.parser(), shellWords(QString::fromUtf8(line)));
}

std::vector<std::string> candidates(const char *line)
{
    std::vector<std::string> texts;
    for (const QString &candidate : completed(line).candidates)
        texts.push_back(candidate.toStdString());
    return texts;
}

} // namespace

TEST(Completion, ListsTheCommandsThatTheHelpShows)
{
    EXPECT_THAT(candidates("korvectl "), ElementsAre("devices", "records", "record", "replay", "spectrum", "export", "time", "watch", "errors", "tree", "doctor", "completion"));
    EXPECT_THAT(candidates("korvectl d"), ElementsAre("devices", "doctor"));
    EXPECT_THAT(candidates("korvectl --json --timeout 3 tree "), ElementsAre("ls", "get", "watch"));
    EXPECT_THAT(candidates("KORVE_CCO=a korvectl re"), ElementsAre("records", "record", "replay"));
}

TEST(Completion, ListsTheOptionsOfACommandAndOfAll)
{
    EXPECT_THAT(candidates("korvectl tree watch --"),
                IsSupersetOf({"--count", "--for", "--json", "--subsystem", "--timeout", "--verbose", "--help"}));
    EXPECT_THAT(candidates("korvectl tree watch --c"), ElementsAre("--count"));
    EXPECT_THAT(candidates("korvectl devices --c"), IsEmpty());
}

TEST(Completion, KnowsWhatIsExpected)
{
    EXPECT_EQ(completed("korvectl records ").parameter, "DEVICE");
    EXPECT_EQ(completed("korvectl records REC1 ").parameter, "");
    EXPECT_EQ(completed("korvectl record show REC1 R").parameter, "RECORD");
    EXPECT_EQ(completed("korvectl record stop ").parameter, "CHANNEL");
    EXPECT_EQ(completed("korvectl record history add 'REC 1' ").device, "REC 1");
    EXPECT_THAT(candidates("korvectl record bookmarks "), ElementsAre("list", "add", "remove"));
    EXPECT_THAT(candidates("korvectl record deletable REC1 R1 o"), ElementsAre("on", "off"));
    EXPECT_THAT(candidates("korvectl errors 1 --flow St"), ElementsAre("StartReplay", "StartRecording", "StopRecording"));
    EXPECT_EQ(completed("korvectl tree get -v /KO").parameter, "PATH");
    EXPECT_EQ(completed("korvectl tree get -v /KO").begun, QLatin1String("/KO"));
    EXPECT_EQ(completed("korvectl devices --subsystem ").parameter, "SUBSYSTEM");
    EXPECT_EQ(completed("korvectl --subsystem 'Far West' records ").subsystem, "Far West");
    EXPECT_THAT(candidates("korvectl completion "), ElementsAre("bash"));
}

TEST(Completion, HasNothingForWhatIsFreeOrWrong)
{
    EXPECT_THAT(candidates("korvectl --timeout "), IsEmpty());
    EXPECT_THAT(candidates("korvectl devices "), IsEmpty());
    EXPECT_THAT(candidates("korvectl nonsense --nothing x"), IsEmpty());
    EXPECT_THAT(candidates(""), ElementsAre("devices", "records", "record", "replay", "spectrum", "export", "time", "watch", "errors", "tree", "doctor", "completion"));
}
