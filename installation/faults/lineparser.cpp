#include "installation/faults/lineparser.h"

#include "installation/faults/answers.h"
#include "installation/faults/roles.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <stdexcept>

using namespace std::chrono_literals;

namespace installation::faults
{

namespace
{

[[noreturn]] void refuse(const std::string &reason)
{
    throw std::invalid_argument(reason);
}

std::string quoted(const std::string &word)
{
    return '"' + word + '"';
}

/// The whole text as a number without sign.
std::optional<unsigned> numberIn(std::string_view text)
{
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole ? std::optional(number) : std::nullopt;
}

std::chrono::milliseconds unitAtEndOf(std::string_view &text)
{
    struct Unit {
        std::string_view name;
        std::chrono::milliseconds length;
    };
    for (const Unit &unit : {Unit{"ms", 1ms}, Unit{"s", 1s}, Unit{"min", 1min}})
        if (text.ends_with(unit.name)) {
            text.remove_suffix(unit.name.size());
            return unit.length;
        }
    return 0ms;
}

bool isServedBy(const Operation &operation, const std::string &role)
{
    return role.empty() || roleOfModule(operation.module) == role;
}

/// One of that name that can be meant, and @p fits; null when there is none.
template <typename Fits> const Operation *find(const std::string &role, const std::string &name, Fits fits)
{
    const auto all = allOperations();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Operation &operation) {
        return operation.name == name && isServedBy(operation, role) && fits(operation);
    });
    return found == all.end() ? nullptr : &*found;
}

} // namespace

LineParser::LineParser(std::string_view line, const std::string &place, FaultScript &script)
    : words(scriptWords(line)), origin(place + ": " + std::string(line)), script(script)
{
}

void LineParser::parse()
{
    if (isAtEnd())
        return;
    if (takeIf("at"))
        parseProcess();
    else if (takeIf("on"))
        parseCall();
    else if (takeIf("disk"))
        parseDisk();
    else
        refuse("a line begins with \"at\", \"on\" or \"disk\", not with " + quoted(words.front().text));
    if (!isAtEnd())
        refuse("nothing belongs behind that: " + quoted(words[position].text));
}

void LineParser::parseProcess()
{
    ProcessFault fault{takeTime(), {}, {}, origin};
    const bool isStopped = takeIf("stop");
    if (!isStopped)
        require("kill");
    fault.role = take("cco, recorder or manager");
    if (!isRole(fault.role))
        refuse("no role is called " + quoted(fault.role));
    if (isStopped) {
        require("for");
        fault.stopped = takeTime();
    }
    script.processes.push_back(fault);
}

void LineParser::parseDisk()
{
    const int error = takeDiskError();
    require("on");
    DiskFault fault{error, take("the id of a device")};
    fault.window = takeWindow();
    script.disks.push_back(fault);
}

int LineParser::takeDiskError()
{
    if (takeIf("full"))
        return ENOSPC;
    require("defect");
    return EIO;
}

void LineParser::parseCall()
{
    std::string role = takeRoleOfCall();
    const std::string operation = takeOperation(role);
    const CallAction action = takeAction(role, operation);
    const TimeWindow window = takeWindow();
    script.calls.push_back({role, operation, action, window, takeTimes(), origin});
}

std::string LineParser::takeRoleOfCall()
{
    const bool isNamed = !isAtEnd() && isRole(words[position].text);
    return isNamed ? take("a role") : std::string();
}

std::string LineParser::takeOperation(const std::string &role)
{
    const std::string name = take("an operation");
    if (!find(role, name, [](const Operation &) { return true; }))
        refuse(role.empty() ? "no service has an operation " + quoted(name)
                            : "the " + role + " has no operation " + quoted(name));
    return name;
}

CallAction LineParser::takeAction(std::string &role, const std::string &operation)
{
    if (takeIf("pass"))
        return Pass{};
    if (takeIf("delay"))
        return Delay{takeTime()};
    if (takeIf("raise"))
        return takeException();
    if (takeIf("answer"))
        return takeAnswer(role, operation);
    require("kill");
    return takeKill();
}

CallAction LineParser::takeKill()
{
    if (takeIf("within"))
        return KillSometime{takeTime()};
    const bool isAfterwards = takeIf("after");
    if (!isAfterwards && !takeIf("before"))
        refuse("\"before\", \"after\" or \"within\" is missing behind \"kill\"");
    return KillProcess{isAfterwards};
}

CallAction LineParser::takeException()
{
    const std::string name = take("an exception");
    if (const RaiseSystemException raise = systemExceptionNamed(name))
        return RaiseSystem{raise};
    const auto all = allUserExceptions();
    const auto found = std::find_if(all.begin(), all.end(), [&](const UserException &row) { return row.name == name; });
    if (found == all.end())
        refuse("no exception is called " + quoted(name));
    RaiseUser action{&*found, takeKind(*found), {}};
    if (!isAtEnd() && words[position].isQuoted)
        action.text = words[position++].text;
    return action;
}

unsigned LineParser::takeKind(const UserException &exception)
{
    const std::string word = take("the kind of the exception");
    const auto named = std::find(exception.kinds.begin(), exception.kinds.end(), word);
    const auto kind = numberIn(word).value_or(static_cast<unsigned>(named - exception.kinds.begin()));
    if (kind >= exception.kinds.size())
        refuse(std::string(exception.name) + " has no kind " + quoted(word));
    return kind;
}

Answer LineParser::takeAnswer(std::string &role, const std::string &operation)
{
    const Operation *const answerable = find(role, operation, isAnswerable);
    if (!answerable)
        refuse(quoted(operation) + " has no answer that is a number alone");
    role = roleOfModule(answerable->module);
    const unsigned number = takeNumber("a number to answer");
    if (answerable->result == Result::Truth && number > 1)
        refuse(quoted(operation) + " answers 0 or 1");
    return {answerable->result, number};
}

TimeWindow LineParser::takeWindow()
{
    if (!takeIf("from"))
        return {};
    TimeWindow window{takeTime()};
    require("to");
    window.end = takeTime();
    if (*window.end <= window.begin)
        refuse("the end of a time comes after its begin");
    return window;
}

unsigned LineParser::takeTimes()
{
    if (isAtEnd())
        return 0;
    if (takeIf("once"))
        return 1;
    const unsigned times = takeNumber("\"once\" or a number of times");
    if (times == 0)
        refuse("0 times is never");
    require("times");
    return times;
}

bool LineParser::takeIf(std::string_view word)
{
    const bool isNext = !isAtEnd() && !words[position].isQuoted && words[position].text == word;
    position += isNext ? 1 : 0;
    return isNext;
}

void LineParser::require(std::string_view word)
{
    if (takeIf(word))
        return;
    const std::string wanted = quoted(std::string(word)) + " is missing";
    refuse(isAtEnd() ? wanted : wanted + " before " + quoted(words[position].text));
}

std::string LineParser::take(const char *meaning)
{
    if (isAtEnd() || words[position].isQuoted)
        refuse(std::string(meaning) + " is missing");
    return words[position++].text;
}

std::chrono::milliseconds LineParser::takeTime()
{
    constexpr std::chrono::milliseconds longest = 24h;
    const std::string word = take("a time");
    std::string_view digits = word;
    const std::chrono::milliseconds unit = unitAtEndOf(digits);
    const auto count = numberIn(digits);
    if (!count || unit == 0ms)
        refuse(quoted(word) + " is no time, such as 500ms, 12s or 2min");
    if (*count > longest / unit)
        refuse(quoted(word) + " is longer than a day");
    return *count * unit;
}

unsigned LineParser::takeNumber(const char *meaning)
{
    const std::string word = take(meaning);
    const auto number = numberIn(word);
    if (!number)
        refuse(quoted(word) + " is not " + meaning);
    return *number;
}

} // namespace installation::faults
