#include "korvebase/errordescriptor.h"

#include "tests/appruntime/capturedtraces.h"

#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"
#include "valuetreelib/valueptr.h"

#include <gmock/gmock.h>

#include <QCoreApplication>

#include <map>
#include <memory>
#include <stdexcept>
#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;
using values::Tree;
using Classifier = ErrorDescriptor::ErrorClassifier;

namespace
{
const char *const source = "korvebase/errordescriptor";

Classifier classifier(int value)
{
    return static_cast<Classifier>(value);
}

struct Spoken {
    int value;
    const char *text;
};
const Spoken classifiers[] = {{0, "Message"},   {1, "Warning"}, {2, "Error"},
                              {3, "Exception"}, {4, "NoValue"}, {5, "Information"}};
const Classifier error = classifier(2);
const Classifier noValue = classifier(4);

int numberOf(const QString &answer)
{
    return answer.section(u'@', 0, 0).toInt();
}

TEST(ErrorClassifier, HasATextForEachValue)
{
    for (const Spoken &one : classifiers) {
        EXPECT_EQ(ErrorDescriptor::Image(classifier(one.value)).toStdString(), one.text);
        EXPECT_EQ(ErrorDescriptor::ImageToValue(QLatin1String(one.text)), classifier(one.value));
    }
    EXPECT_EQ(ErrorDescriptor::NoValue, noValue);
    for (const int unknown : {-1, 6, 1000000})
        EXPECT_EQ(ErrorDescriptor::Image(classifier(unknown)), QString());
}

TEST(ErrorClassifier, IsNoValueForOtherTexts)
{
    for (const char *const text : {"", "error", "Error ", "Errors", "2", "Information@"})
        EXPECT_EQ(ErrorDescriptor::ImageToValue(QLatin1String(text)), noValue) << text;
}

TEST(ErrorString, HasANumberThatGrowsByOneInTheWholeProcess)
{
    ErrorDescriptor one;
    ErrorDescriptor other(QStringLiteral("/Root"));
    const QString code = QStringLiteral("42"), message = QStringLiteral("disk full");
    const QString first = one.ConstructErrorString(error, code, message);
    const QString second = other.ConstructErrorString(error, code, message);
    EXPECT_GE(numberOf(first), 1); // counted before use
    EXPECT_EQ(numberOf(second), numberOf(first) + 1);
    EXPECT_EQ(first.section(u'@', 1).toStdString(), "Error@42@disk full");
    EXPECT_EQ(second.section(u'@', 1).toStdString(), "Error@42@disk full");
}

TEST(ErrorString, KeepsWhatItIsGiven)
{
    ErrorDescriptor descriptor;
    for (const Spoken &one : classifiers)
        EXPECT_EQ(descriptor.ConstructErrorString(classifier(one.value), QStringLiteral("%1"), QStringLiteral("%2é%4"))
                      .section(u'@', 1),
                  QLatin1String(one.text) + QString::fromUtf8("@%1@%2é%4"));
    EXPECT_EQ(descriptor.ConstructErrorString(error, QString(), QString()).section(u'@', 1), QStringLiteral("Error@@"));
}

struct Answer {
    const char *name;
    const char *text;
    int classifier;
    const char *code;
    const char *message;
};

class ReadErrorString : public testing::TestWithParam<Answer>
{
};

INSTANTIATE_TEST_SUITE_P(Answers, ReadErrorString,
                         testing::Values(Answer{"Whole", "5@Error@42@disk full", 2, "42", "disk full"},
                                         Answer{"Message", "0@Message@@", 0, "", ""},
                                         Answer{"Warning", "1@Warning@w@x", 1, "w", "x"},
                                         Answer{"Exception", "1@Exception@w@x", 3, "w", "x"},
                                         Answer{"Information", "9@Information@0@done", 5, "0", "done"},
                                         Answer{"MessageWithAt", "5@Error@42@disk@full@x", 2, "42", "disk"},
                                         Answer{"NumberIgnored", "five@Error@42@x", 2, "42", "x"},
                                         Answer{"NumberMissing", "@Error@42@x", 2, "42", "x"},
                                         Answer{"NoMessage", "5@Error@42", 2, "42", ""},
                                         Answer{"NoCode", "5@Error", 2, "", ""},
                                         Answer{"Blanks", "5@Error@ 42 @ x ", 2, " 42 ", " x "}),
                         [](const auto &info) { return info.param.name; });

TEST_P(ReadErrorString, IsTakenApart)
{
    const CapturedTraces traces;
    ErrorDescriptor descriptor;
    const auto read = descriptor.GetErrorCode(QLatin1String(GetParam().text));
    EXPECT_TRUE(read.valid);
    EXPECT_EQ(read.classifier, classifier(GetParam().classifier));
    EXPECT_EQ(read.errorCode.toStdString(), GetParam().code);
    EXPECT_EQ(read.message.toStdString(), GetParam().message);
    const std::unique_ptr<ErrorDescriptor::StruReturnErrorCode> owned(
        descriptor.GetErrorCodePtr(QLatin1String(GetParam().text)));
    ASSERT_TRUE(owned);
    EXPECT_TRUE(owned->valid);
    EXPECT_EQ(owned->classifier, read.classifier);
    EXPECT_EQ(owned->errorCode, read.errorCode);
    EXPECT_EQ(owned->message, read.message);
    EXPECT_THAT(traces.texts(), IsEmpty());
}

TEST(ErrorString, IsReadAsItWasWritten)
{
    ErrorDescriptor descriptor;
    const QString message = QString::fromUtf8("Диск 💾 100%1 ||");
    const auto read = descriptor.GetErrorCode(descriptor.ConstructErrorString(error, QStringLiteral("7"), message));
    EXPECT_TRUE(read.valid);
    EXPECT_EQ(read.errorCode, QStringLiteral("7"));
    EXPECT_EQ(read.message, message);
}

bool isDefault(const ErrorDescriptor::StruReturnErrorCode &read)
{
    return !read.valid && read.classifier == noValue && read.errorCode.isEmpty() && read.message.isEmpty();
}

TEST(CorruptErrorString, IsTracedAndGivesNothing)
{
    EXPECT_TRUE(isDefault(ErrorDescriptor::StruReturnErrorCode()));
    ErrorDescriptor descriptor;
    for (const char *const text : {"", "5@Bad@42@x", "5@NoValue@42@x", "5@error@42@x", "Error", "Error@42@x", "5",
                                   "5@@42@x", "@@@", "%1@%2@%3@%4"}) {
        const std::string trace = "ErrorDescriptor::GetErrorCode ->" + std::string(text) + " is corrupt";
        CapturedTraces traces(32);
        EXPECT_TRUE(isDefault(descriptor.GetErrorCode(QLatin1String(text)))) << text;
        EXPECT_THAT(traces.take(), ElementsAre(trace));
        EXPECT_EQ(traces.sourceOf(trace), source);
        const std::unique_ptr<ErrorDescriptor::StruReturnErrorCode> owned(
            descriptor.GetErrorCodePtr(QLatin1String(text)));
        ASSERT_TRUE(owned);
        EXPECT_TRUE(isDefault(*owned)) << text;
        EXPECT_THAT(traces.take(), ElementsAre(trace));
    }
}

TEST(CorruptErrorString, IsTracedWholeWhenManyThreadsReadAtOnce)
{
    constexpr int readers = 4, times = 1000;
    ErrorDescriptor descriptor;
    std::map<std::string, int> traced;
    {
        const CapturedTraces traces(32);
        std::vector<std::thread> threads;
        for (int reader = 0; reader < readers; ++reader)
            threads.emplace_back([&descriptor, text = QString(40 + reader, QChar(u'a' + reader))] {
                for (int i = 0; i < times; ++i)
                    descriptor.GetErrorCode(text);
            });
        for (std::thread &thread : threads)
            thread.join();
        for (const std::string &text : traces.texts())
            ++traced[text];
    }
    std::map<std::string, int> expected;
    for (int reader = 0; reader < readers; ++reader)
        expected["ErrorDescriptor::GetErrorCode ->" + std::string(40 + reader, 'a' + reader) + " is corrupt"] = times;
    EXPECT_EQ(traced, expected);
}

TEST(ErrorStrings, AreSplitAtTheDoubleBar)
{
    const auto split = [](const char *text) {
        std::vector<std::string> parts;
        for (const QString &part : ErrorDescriptor::Split(QLatin1String(text)))
            parts.push_back(part.toStdString());
        return parts;
    };
    EXPECT_THAT(split("a||b||c"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(split("1@Error@42@x||2@Message@0@y"), ElementsAre("1@Error@42@x", "2@Message@0@y"));
    EXPECT_THAT(split("a|b"), ElementsAre("a|b"));
    EXPECT_THAT(split("a"), ElementsAre("a"));
    EXPECT_THAT(split(""), ElementsAre(""));
    EXPECT_THAT(split("a||"), ElementsAre("a", ""));
    EXPECT_THAT(split("||a"), ElementsAre("", "a"));
    EXPECT_THAT(split("a||||b"), ElementsAre("a", "", "b"));
}

/// Writes down who told it of what, and may be in trouble then.
class Listener : public IObserver
{
public:
    explicit Listener(std::vector<std::string> &diary, std::string name) : diary(diary), name(std::move(name)) {}
    void Update(Observable *, TChangeCode code) override
    {
        diary.push_back(name + " " + std::to_string(code));
        thread = std::this_thread::get_id();
        if (troubled)
            throw std::runtime_error("trouble");
    }
    bool troubled = false;
    std::thread::id thread;

private:
    std::vector<std::string> &diary;
    const std::string name;
};

/// A command's and a channel's answer below "/Root", both watched, and one without a root.
class ErrorAnswer : public testing::Test
{
protected:
    using Text = values::ValuePtr<values::Value<QString>>;

    ErrorAnswer()
    {
        command.getOrCreate(QStringLiteral("/Root/KORVE/Command/ErrorCode"));
        channel.getOrCreate(QStringLiteral("/Root/KORVE/Channel/7/ErrorCode"));
        rootless.getOrCreate(QStringLiteral("/KORVE/Command/ErrorCode"));
        command->AddObserver(&ofCommand);
        channel->AddObserver(&ofChannel);
    }
    ~ErrorAnswer() override
    {
        command->DeleteObserver(&ofCommand);
        channel->DeleteObserver(&ofChannel);
        for (Text *const held : {&command, &channel, &rootless})
            held->Reset();
        Tree::Instance().removeNode(QStringLiteral("/"));
    }
    /// What stands behind the number.
    static std::string answer(const Text &value) { return value->GetValue().section(u'@', 1).toStdString(); }
    static void runPosted() { QCoreApplication::sendPostedEvents(); }

    const QString code = QStringLiteral("42"), message = QStringLiteral("disk full");
    const QString commandPath = QStringLiteral("/Root/KORVE/Command/ErrorCode");
    const QString channelPath = QStringLiteral("/Root/KORVE/Channel/7/ErrorCode");
    std::vector<std::string> diary;
    Listener ofCommand{diary, "command"}, ofChannel{diary, "channel"};
    Text command, channel, rootless;
    ErrorDescriptor descriptor{QStringLiteral("/Root")};
};

TEST_F(ErrorAnswer, IsInTheTreeWhenTheMainThreadComesToIt)
{
    descriptor.WriteCommandResponse(error, code, message);
    EXPECT_TRUE(command->GetValue().isEmpty()); // posted, also from the main thread
    runPosted();
    EXPECT_EQ(answer(command), "Error@42@disk full");
    EXPECT_TRUE(channel->GetValue().isEmpty());
    EXPECT_TRUE(rootless->GetValue().isEmpty());
    EXPECT_THAT(diary, ElementsAre("command 3"));
}

TEST_F(ErrorAnswer, GoesToTheCommandFirstAndThenToTheChannel)
{
    descriptor.WriteCommandResponse(error, QStringLiteral("7"), code, message);
    EXPECT_TRUE(diary.empty());
    runPosted();
    EXPECT_THAT(diary, ElementsAre("command 3", "channel 3"));
    EXPECT_EQ(command->GetValue(), channel->GetValue());
    EXPECT_EQ(answer(channel), "Error@42@disk full");
}

TEST_F(ErrorAnswer, GoesToAPathOfItsOwn)
{
    descriptor.WriteCommandResponseToTree(classifier(5), channelPath, code, message);
    EXPECT_TRUE(channel->GetValue().isEmpty());
    runPosted();
    EXPECT_EQ(answer(channel), "Information@42@disk full");
    EXPECT_TRUE(command->GetValue().isEmpty());
}

TEST_F(ErrorAnswer, GoesBelowNoRootWithoutOne)
{
    ErrorDescriptor().WriteCommandResponse(error, code, message); // gone before the event runs
    runPosted();
    EXPECT_EQ(answer(rootless), "Error@42@disk full");
    EXPECT_TRUE(command->GetValue().isEmpty());
}

TEST_F(ErrorAnswer, DiffersFromTheSameOneBefore)
{
    descriptor.WriteCommandResponse(error, code, message);
    runPosted();
    const QString first = command->GetValue();
    descriptor.WriteCommandResponse(error, code, message);
    runPosted();
    EXPECT_EQ(numberOf(command->GetValue()), numberOf(first) + 1);
    EXPECT_THAT(diary, ElementsAre("command 3", "command 3"));
}

TEST_F(ErrorAnswer, MayComeFromAnyThread)
{
    std::thread writer([&] { descriptor.WriteCommandResponse(error, QStringLiteral("7"), code, message); });
    writer.join();
    EXPECT_THAT(diary, IsEmpty());
    runPosted();
    EXPECT_THAT(diary, ElementsAre("command 3", "channel 3"));
    EXPECT_EQ(ofCommand.thread, std::this_thread::get_id());
    EXPECT_EQ(answer(channel), "Error@42@disk full");
}

TEST_F(ErrorAnswer, IsToldAgainWhenItIsTheSameText)
{
    const QString text = QStringLiteral("1@Error@42@x");
    descriptor.WriteCommandResponseInternal(text, commandPath, channelPath);
    EXPECT_THAT(diary, ElementsAre("command 3", "channel 3"));
    descriptor.WriteCommandResponseInternal(text, commandPath, channelPath);
    EXPECT_THAT(diary, ElementsAre("command 3", "channel 3", "command 3", "channel 3"));
    EXPECT_EQ(command->GetValue(), text);
    EXPECT_EQ(channel->GetValue(), text);
}

TEST_F(ErrorAnswer, LeavesOutAnEmptyPath)
{
    descriptor.WriteCommandResponseInternal(QStringLiteral("x"), QString(), channelPath);
    descriptor.WriteCommandResponseInternal(QStringLiteral("y"), commandPath, QString());
    EXPECT_THAT(diary, ElementsAre("channel 3", "command 3"));
    EXPECT_EQ(channel->GetValue(), QStringLiteral("x"));
    EXPECT_EQ(command->GetValue(), QStringLiteral("y"));
}

TEST_F(ErrorAnswer, MakesNoValueThatIsNotThere)
{
    values::ValuePtr<values::Value<bool>> flag;
    flag.getOrCreate(QStringLiteral("/Root/flag"));
    descriptor.WriteCommandResponse(error, QStringLiteral("8"), code, message);
    descriptor.WriteCommandResponseToTree(error, QStringLiteral("/Root/flag"), code, message);
    descriptor.WriteCommandResponseToTree(error, QStringLiteral("/nowhere/ErrorCode"), code, message);
    runPosted();
    EXPECT_EQ(Tree::Instance().findNode(QStringLiteral("/Root/KORVE/Channel/8")), nullptr);
    EXPECT_EQ(Tree::Instance().findNode(QStringLiteral("/nowhere")), nullptr);
    EXPECT_FALSE(flag->GetValue());
    EXPECT_EQ(answer(command), "Error@42@disk full");
}

TEST_F(ErrorAnswer, SurvivesAnObserversTrouble)
{
    ofCommand.troubled = true;
    CapturedTraces traces(32);
    EXPECT_NO_THROW(descriptor.WriteCommandResponseInternal(QStringLiteral("x"), commandPath, QString()));
    const std::string trace = "UNKNOWN EXCEPTION in ErrorDescriptor::WriteCommandResponseInternal";
    EXPECT_THAT(traces.texts(), ElementsAre(trace));
    EXPECT_EQ(traces.sourceOf(trace), source);
    EXPECT_EQ(command->GetValue(), QStringLiteral("x"));
}

TEST_F(ErrorAnswer, IsTracedForDebuggingOnly)
{
    const std::string trace = "WriteCommandResponseInternal 1@Error@%2@%3, " + commandPath.toStdString() + ", /none";
    for (const unsigned mask : {32u, 64u}) {
        CapturedTraces traces(mask);
        descriptor.WriteCommandResponseInternal(QStringLiteral("1@Error@%2@%3"), commandPath, QStringLiteral("/none"));
        EXPECT_EQ(traces.texts(), mask == 64 ? std::vector<std::string>{trace} : std::vector<std::string>());
        EXPECT_EQ(traces.sourceOf(trace), mask == 64 ? source : "");
    }
}
} // namespace
