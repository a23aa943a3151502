#include "installation/faults/faultscript.h"

#include <gmock/gmock.h>

#include <omniORB4/CORBA.h>

#include <map>

using namespace installation::faults;
using namespace std::chrono_literals;

namespace
{

FaultScript parsed(const std::string &text)
{
    return FaultScript::parsed(text, "x.faults");
}

/// Empty when there is none.
std::string refusalOf(const std::string &text)
{
    try {
        parsed(text);
    } catch (const std::invalid_argument &refusal) {
        return refusal.what();
    }
    return {};
}

CallFault onlyCall(const std::string &line)
{
    const FaultScript script = parsed(line);
    EXPECT_EQ(script.calls.size(), 1u) << line;
    return script.calls.at(0);
}

template <typename Action> Action actionOf(const std::string &line)
{
    return std::get<Action>(onlyCall(line).action);
}

struct Refusal {
    const char *name;
    std::string text;
    std::string reason;
};

class RefusedScript : public testing::TestWithParam<Refusal>
{
};

} // namespace

TEST(FaultScriptTest, MayBeEmpty)
{
    EXPECT_TRUE(parsed("").isEmpty());
    EXPECT_TRUE(parsed("\n# nothing\n   \t # here\r\n\n").isEmpty());
    EXPECT_TRUE(FaultScript::read(QString()).isEmpty());
}

TEST(FaultScriptTest, KillsAndStopsRolesAtTheirTimes)
{
    const FaultScript script = parsed("at 12s kill manager\nat 500ms stop recorder for 2min # and so on\n");
    ASSERT_EQ(script.processes.size(), 2u);
    EXPECT_EQ(script.processes[0].at, 12s);
    EXPECT_EQ(script.processes[0].role, "manager");
    EXPECT_FALSE(script.processes[0].stopped);
    EXPECT_EQ(script.processes[1].at, 500ms);
    EXPECT_EQ(script.processes[1].role, "recorder");
    EXPECT_EQ(script.processes[1].stopped, 2min);
    EXPECT_EQ(script.processes[1].origin, "x.faults:2: at 500ms stop recorder for 2min # and so on");
}

TEST(FaultScriptTest, FillsDisks)
{
    const FaultScript script = parsed("disk full on recorder-1\ndisk full on REC2 from 3s to 9s");
    ASSERT_EQ(script.disks.size(), 2u);
    EXPECT_EQ(script.disks[0].device, "recorder-1");
    EXPECT_TRUE(script.disks[0].window.holds(0s));
    EXPECT_TRUE(script.disks[0].window.holds(24h));
    EXPECT_FALSE(script.disks[1].window.holds(2999ms));
    EXPECT_TRUE(script.disks[1].window.holds(3s));
    EXPECT_FALSE(script.disks[1].window.holds(9s));
}

TEST(FaultScriptTest, TellsRolesAndOperations)
{
    EXPECT_EQ(onlyCall("on copyRecord delay 1s").role, "");
    const CallFault fault = onlyCall("on  recorder\tcopyRecord delay 1s");
    EXPECT_EQ(fault.role, "recorder");
    EXPECT_EQ(fault.operation, "copyRecord");
}

TEST(FaultScriptTest, CountsAndLimitsInTime)
{
    EXPECT_EQ(onlyCall("on getRecord delay 1s").times, 0u);
    EXPECT_EQ(onlyCall("on getRecord delay 1s once").times, 1u);
    const CallFault fault = onlyCall("on getRecord delay 1s from 1s to 2s 7 times");
    EXPECT_EQ(fault.times, 7u);
    EXPECT_FALSE(fault.window.holds(0s));
    EXPECT_TRUE(fault.window.holds(1s));
}

TEST(FaultScriptTest, KnowsAllActions)
{
    actionOf<Pass>("on getAllRecords pass 2 times");
    EXPECT_EQ(actionOf<Delay>("on getAllRecords delay 15s").duration, 15s);
    EXPECT_EQ(actionOf<Answer>("on StopReplay answer 7000").number, 7000u);
    EXPECT_EQ(actionOf<Answer>("on deleteRecord answer 0").number, 0u);
    EXPECT_FALSE(actionOf<KillProcess>("on getRecord kill before").isAfterwards);
    EXPECT_TRUE(actionOf<KillProcess>("on getRecord kill after").isAfterwards);
    EXPECT_EQ(actionOf<KillSometime>("on getRecord kill within 5ms").within, 5ms);
    EXPECT_THROW(actionOf<RaiseSystem>("on getRecord raise COMM_FAILURE").raise(), CORBA::COMM_FAILURE);
    EXPECT_THROW(actionOf<RaiseSystem>("on getRecord raise TRANSIENT once").raise(), CORBA::TRANSIENT);
}

TEST(FaultScriptTest, HasOnlyThoseAnswerANumberWhoReturnOne)
{
    EXPECT_EQ(onlyCall("on copyRecord answer 7").role, "manager");
    EXPECT_EQ(actionOf<Answer>("on copyRecord answer 7").result, Result::Number);
    EXPECT_EQ(actionOf<Answer>("on deleteRecord answer 1").result, Result::Truth);
    EXPECT_EQ(onlyCall("on copyRecord raise TRANSIENT").role, "");
}

TEST(FaultScriptTest, KnowsKindsByWordAndNumber)
{
    const auto byNumber = actionOf<RaiseUser>("on addBookmark raise exKorve 34");
    EXPECT_EQ(byNumber.exception->name, "exKorve");
    EXPECT_EQ(byNumber.kind, 34u);
    EXPECT_EQ(byNumber.text, "");
    const auto byWord = actionOf<RaiseUser>("on addBookmark raise exKorve ekBOOKMARK_ALREADY_EXISTS \"a \\\"b\\\\ #c\" once");
    EXPECT_EQ(byWord.kind, 34u);
    EXPECT_EQ(byWord.text, "a \"b\\ #c");
}

TEST(FaultScriptTest, KnowsEachExceptionWithAllItsKinds)
{
    std::map<std::string_view, std::size_t> kinds;
    for (const UserException &exception : allUserExceptions())
        kinds[exception.name] = exception.kinds.size();
    const std::map<std::string_view, std::size_t> expected{{"exAdmin", 1}, {"exChan", 6},   {"exChanMan", 9}, {"exGen", 5},
                                                           {"exKRV", 4},   {"exKorve", 35}, {"exLLDC", 8},
                                                           {"exPartlyDone", 35}};
    EXPECT_EQ(kinds, expected);
}

TEST_P(RefusedScript, IsNamedWithLineAndReason)
{
    EXPECT_EQ(refusalOf("# first\n" + GetParam().text), "x.faults:2: " + GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, RefusedScript,
    testing::Values(
        Refusal{"Beginning", "when 5s", "a line begins with \"at\", \"on\" or \"disk\", not with \"when\""},
        Refusal{"Behind", "at 5s kill cco now", "nothing belongs behind that: \"now\""},
        Refusal{"NoTime", "at", "a time is missing"},
        Refusal{"TimeWithoutUnit", "at 5 kill cco", "\"5\" is no time, such as 500ms, 12s or 2min"},
        Refusal{"TimeWithSign", "at -5s kill cco", "\"-5s\" is no time, such as 500ms, 12s or 2min"},
        Refusal{"TimeWithFraction", "at 1.5s kill cco", "\"1.5s\" is no time, such as 500ms, 12s or 2min"},
        Refusal{"LongTime", "at 1441min kill cco", "\"1441min\" is longer than a day"},
        Refusal{"HugeTime", "at 99999999999s kill cco", "\"99999999999s\" is no time, such as 500ms, 12s or 2min"},
        Refusal{"QuotedTime", "at \"5s\" kill cco", "a time is missing"},
        Refusal{"OtherAct", "at 5s hit cco", "\"kill\" is missing before \"hit\""},
        Refusal{"OtherRole", "at 5s kill archive", "no role is called \"archive\""},
        Refusal{"StopWithoutEnd", "at 5s stop cco", "\"for\" is missing"},
        Refusal{"OtherOperation", "on getRecords delay 1s", "no service has an operation \"getRecords\""},
        Refusal{"OperationOfOthers", "on recorder StartReplay delay 1s", "the recorder has no operation \"StartReplay\""},
        Refusal{"OperationOfClients", "on goingDown delay 1s", "no service has an operation \"goingDown\""},
        Refusal{"NoAction", "on getRecord", "\"kill\" is missing"},
        Refusal{"OtherKill", "on getRecord kill now", "\"before\", \"after\" or \"within\" is missing behind \"kill\""},
        Refusal{"OtherException", "on getRecord raise exNone 0", "no exception is called \"exNone\""},
        Refusal{"NoKind", "on getRecord raise exKorve", "the kind of the exception is missing"},
        Refusal{"HighKind", "on getRecord raise exKorve 35", "exKorve has no kind \"35\""},
        Refusal{"OtherKind", "on getRecord raise exKorve ekNONE", "exKorve has no kind \"ekNONE\""},
        Refusal{"TextOfSystemException", "on getRecord raise TRANSIENT \"a\"", "\"once\" or a number of times is missing"},
        Refusal{"AnswerOfVoid", "on addBookmarks answer 3", "\"addBookmarks\" has no answer that is a number alone"},
        Refusal{"AnswerOfOthers", "on recorder copyRecord answer 3",
                "\"copyRecord\" has no answer that is a number alone"},
        Refusal{"AnswerOfText", "on getWorkstationName answer 3", "\"getWorkstationName\" has no answer that is a number alone"},
        Refusal{"NegativeAnswer", "on getRecord answer -1", "\"-1\" is not a number to answer"},
        Refusal{"HighAnswer", "on getRecord answer 4294967296", "\"4294967296\" is not a number to answer"},
        Refusal{"HighTruth", "on deleteRecord answer 2", "\"deleteRecord\" answers 0 or 1"},
        Refusal{"EmptyWindow", "on getRecord delay 1s from 2s to 2s", "the end of a time comes after its begin"},
        Refusal{"OpenWindow", "on getRecord delay 1s from 2s", "\"to\" is missing"},
        Refusal{"NeverAtAll", "on getRecord delay 1s 0 times", "0 times is never"},
        Refusal{"NumberAlone", "on getRecord delay 1s 2", "\"times\" is missing"},
        Refusal{"OtherCount", "on getRecord delay 1s twice", "\"twice\" is not \"once\" or a number of times"},
        Refusal{"DiskOfNoKind", "disk loud on A", "\"defect\" is missing before \"loud\""},
        Refusal{"DiskOfNobody", "disk full on", "the id of a device is missing"},
        Refusal{"CountedDisk", "disk full on A once", "nothing belongs behind that: \"once\""},
        Refusal{"OpenQuotation", "on getRecord raise exKorve 1 \"abc", "a quotation mark has no end"},
        Refusal{"OpenQuotationAtBackslash", "on getRecord raise exKorve 1 \"abc\\", "a quotation mark has no end"},
        Refusal{"QuotationWithin", "on getRecord raise exKorve 1 a\"b\"", "a quotation mark within a word"},
        Refusal{"NothingBehindQuotation", "on getRecord raise exKorve 1 \"a\"once",
                "a blank is missing behind a quotation mark"},
        Refusal{"ControlCharacter", std::string("at 5s kill cco\0", 15), "a control character"},
        Refusal{"NoUtf8", "# \xff", "not UTF-8"}, Refusal{"LongLine", std::string(1001, ' '), "the line is too long"}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(FaultScriptTest, HasAnEnd)
{
    EXPECT_EQ(refusalOf(std::string(FaultScript::mostLines, '\n') + "at 5s kill cco"), "x.faults:10001: too many lines");
}

TEST(FaultScriptTest, NamesAFileThatCannotBeRead)
{
    try {
        FaultScript::read(QStringLiteral("/nowhere/x.faults"));
        FAIL();
    } catch (const std::invalid_argument &refusal) {
        EXPECT_THAT(refusal.what(), testing::StartsWith("/nowhere/x.faults cannot be read: "));
    }
}
