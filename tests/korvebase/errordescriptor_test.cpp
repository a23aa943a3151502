#include "korvebase/errordescriptor.h"

#include "tests/appruntime/capturedtraces.h"

#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"
#include "valuetreelib/valueptr.h"

#include <gmock/gmock.h>

#include <QCoreApplication>

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;
using values::Tree;

namespace
{

using Text = values::ValuePtr<values::Value<QString>>;

constexpr auto commandPath = "/x/KORVE/Command/ErrorCode";
constexpr auto channelPath = "/x/KORVE/Channel/C 1/ErrorCode";

/// Does as it is told with each notification.
class Watcher : public IObserver
{
public:
    Watcher(const Text &value, std::function<void(TChangeCode)> told) : value(value), told(std::move(told))
    {
        this->value->AddObserver(this);
    }
    ~Watcher() override { value->DeleteObserver(this); }
    void Update(Observable *, TChangeCode code) override { told(code); }

private:
    Text value;
    const std::function<void(TChangeCode)> told;
};

/// What stands behind the running number.
QString answer(const Text &value)
{
    return value->GetValue().section('@', 1);
}

class Answers : public testing::Test
{
protected:
    void SetUp() override
    {
        command.getOrCreate(commandPath);
        channel.getOrCreate(channelPath);
    }
    void TearDown() override { Tree::Instance().removeNode("/"); }

    Text command;
    Text channel;
    ErrorDescriptor descriptor{"/x"};
};

TEST_F(Answers, AreInTheTreeOnceTheEventLoopHasRun)
{
    descriptor.WriteCommandResponse(ErrorDescriptor::Error, "42", "disk full");
    EXPECT_EQ(command->GetValue(), "");
    QCoreApplication::processEvents();
    EXPECT_EQ(answer(command), "Error@42@disk full");
    EXPECT_EQ(channel->GetValue(), "");
}

TEST_F(Answers, AreWrittenOnTheMainThread)
{
    std::thread::id writtenOn;
    const Watcher watcher(command, [&](TChangeCode) { writtenOn = std::this_thread::get_id(); });
    std::thread([&] { descriptor.WriteCommandResponse(ErrorDescriptor::Message, "1", "from elsewhere"); }).join();
    QCoreApplication::processEvents();
    EXPECT_EQ(answer(command), "Message@1@from elsewhere");
    EXPECT_EQ(writtenOn, std::this_thread::get_id());
}

TEST_F(Answers, ReachTheCommandBeforeItsChannel)
{
    std::vector<std::string> order;
    const Watcher first(command, [&](TChangeCode) { order.push_back("command"); });
    const Watcher second(channel, [&](TChangeCode) { order.push_back("channel"); });
    descriptor.WriteCommandResponse(ErrorDescriptor::Warning, "C 1", "7", "late");
    QCoreApplication::processEvents();
    EXPECT_THAT(order, ElementsAre("command", "channel"));
    EXPECT_EQ(answer(command), "Warning@7@late");
    EXPECT_EQ(command->GetValue(), channel->GetValue());
}

TEST_F(Answers, GoToAnyPathAsItIs)
{
    descriptor.WriteCommandResponseToTree(ErrorDescriptor::Information, channelPath, "", "%1 100% @ ||");
    QCoreApplication::processEvents();
    EXPECT_EQ(answer(channel), "Information@@%1 100% @ ||");
    EXPECT_EQ(command->GetValue(), "");
}

TEST_F(Answers, StandBelowNothingWithoutARootPath)
{
    Text rootless;
    rootless.getOrCreate("/KORVE/Command/ErrorCode");
    ErrorDescriptor().WriteCommandResponse(ErrorDescriptor::Error, "1", "m");
    QCoreApplication::processEvents();
    EXPECT_EQ(answer(rootless), "Error@1@m");
}

TEST_F(Answers, OutliveTheirWriter)
{
    std::make_unique<ErrorDescriptor>("/x")->WriteCommandResponse(ErrorDescriptor::Error, "1", "m");
    QCoreApplication::processEvents();
    EXPECT_EQ(answer(command), "Error@1@m");
}

TEST_F(Answers, AreNotedAgainWhenTheyRepeat)
{
    std::vector<TChangeCode> codes;
    const Watcher watcher(command, [&](TChangeCode code) { codes.push_back(code); });
    for (int i = 0; i < 3; ++i)
        descriptor.WriteCommandResponseInternal("5@Error@42@x", commandPath, "");
    EXPECT_THAT(codes, ElementsAre(ChangeCodeValue, ChangeCodeValue, ChangeCodeValue));
    EXPECT_EQ(command->GetValue(), "5@Error@42@x");
}

TEST_F(Answers, CreateNoValue)
{
    descriptor.WriteCommandResponseInternal("5@Error@42@x", "/x/Absent", channelPath);
    EXPECT_EQ(Tree::Instance().findValue("/x/Absent"), nullptr);
    EXPECT_EQ(channel->GetValue(), "5@Error@42@x");
}

TEST_F(Answers, LeaveAValueOfAnotherClassAlone)
{
    values::ValuePtr<values::Value<int>> number;
    number.getOrCreate("/x/Number");
    descriptor.WriteCommandResponseInternal("17", "/x/Number", "");
    EXPECT_EQ(number->GetValue(), 0);
}

TEST_F(Answers, AreTracedForDebuggingOnly)
{
    CapturedTraces debugging(static_cast<unsigned>(TraceLevel::Debug));
    descriptor.WriteCommandResponseInternal("1@Error@%3@%2", commandPath, "");
    EXPECT_THAT(debugging.take(),
                ElementsAre("WriteCommandResponseInternal 1@Error@%3@%2, /x/KORVE/Command/ErrorCode, "));
    ErrorHandler::Instance().setTraceMask(static_cast<unsigned>(TraceLevel::Normal));
    descriptor.WriteCommandResponseInternal("2@Error@1@m", commandPath, "");
    EXPECT_THAT(debugging.take(), IsEmpty());
}

TEST_F(Answers, SurviveAnObserverThatThrows)
{
    const Watcher troublemaker(command, [](TChangeCode) { throw std::runtime_error("trouble"); });
    CapturedTraces traces(static_cast<unsigned>(TraceLevel::Normal));
    EXPECT_NO_THROW(descriptor.WriteCommandResponseInternal("1@Error@1@m", commandPath, ""));
    EXPECT_THAT(traces.texts(), ElementsAre("UNKNOWN EXCEPTION in ErrorDescriptor::WriteCommandResponseInternal"));
}

TEST(ErrorStrings, AreNumberedOneAfterAnother)
{
    ErrorDescriptor one;
    ErrorDescriptor other;
    const QString first = one.ConstructErrorString(ErrorDescriptor::Exception, "9", "m");
    const QString second = other.ConstructErrorString(ErrorDescriptor::Exception, "9", "m");
    const qulonglong number = first.section('@', 0, 0).toULongLong();
    EXPECT_GT(number, 0U);
    EXPECT_EQ(first, QStringLiteral("%1@Exception@9@m").arg(number));
    EXPECT_EQ(second, QStringLiteral("%1@Exception@9@m").arg(number + 1));
}

struct ErrorStringCase {
    const char *name;
    const char *text;
    ErrorDescriptor::ErrorClassifier classifier; ///< NoValue where the text is corrupt
    const char *errorCode;
    const char *message;
};

class ErrorString : public testing::TestWithParam<ErrorStringCase>
{
};

TEST_P(ErrorString, IsTakenApart)
{
    const ErrorStringCase &row = GetParam();
    const bool isValid = row.classifier != ErrorDescriptor::NoValue;
    CapturedTraces traces(static_cast<unsigned>(TraceLevel::Normal));
    ErrorDescriptor descriptor;
    const std::unique_ptr<ErrorDescriptor::StruReturnErrorCode> onHeap(descriptor.GetErrorCodePtr(row.text));
    for (const auto &read : {descriptor.GetErrorCode(row.text), *onHeap}) {
        EXPECT_EQ(read.valid, isValid);
        EXPECT_EQ(read.classifier, row.classifier);
        EXPECT_EQ(read.errorCode, row.errorCode);
        EXPECT_EQ(read.message, row.message);
    }
    const std::string corrupt = std::string("ErrorDescriptor::GetErrorCode ->") + row.text + " is corrupt";
    EXPECT_EQ(traces.texts(), isValid ? std::vector<std::string>() : std::vector<std::string>(2, corrupt));
}

INSTANTIATE_TEST_SUITE_P(
    Forms, ErrorString,
    testing::Values(ErrorStringCase{"Complete", "5@Error@42@disk full", ErrorDescriptor::Error, "42", "disk full"},
                    ErrorStringCase{"OfTheFirstClassifier", "5@Message@42@x", ErrorDescriptor::Message, "42", "x"},
                    ErrorStringCase{"OfTheLastClassifier", "5@Information@42@x", ErrorDescriptor::Information, "42",
                                    "x"},
                    ErrorStringCase{"WithoutNumber", "@Warning@1@m", ErrorDescriptor::Warning, "1", "m"},
                    ErrorStringCase{"WithAnythingForANumber", "x y@Warning@1@m", ErrorDescriptor::Warning, "1", "m"},
                    ErrorStringCase{"MessageWithTheSeparator", "5@Error@42@a@b", ErrorDescriptor::Error, "42", "a"},
                    ErrorStringCase{"ClassifierAlone", "5@Exception", ErrorDescriptor::Exception, "", ""},
                    ErrorStringCase{"UnknownClassifier", "5@Bad@42@x", ErrorDescriptor::NoValue, "", ""},
                    ErrorStringCase{"ClassifierInAnotherCase", "5@error@42@x", ErrorDescriptor::NoValue, "", ""},
                    ErrorStringCase{"ClassifierThatMeansNone", "5@NoValue@42@x", ErrorDescriptor::NoValue, "", ""},
                    ErrorStringCase{"NumberAlone", "5", ErrorDescriptor::NoValue, "", ""},
                    ErrorStringCase{"WithPlacesToFill", "5@%1@%2@x", ErrorDescriptor::NoValue, "", ""},
                    ErrorStringCase{"Empty", "", ErrorDescriptor::NoValue, "", ""}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(ErrorStrings, AreReadAsTheyWereWritten)
{
    ErrorDescriptor descriptor;
    const auto read = descriptor.GetErrorCode(descriptor.ConstructErrorString(
        ErrorDescriptor::Warning, "7", QString::fromUtf8("\u0414\u0438\u0441\u043A \U0001F4BE 100%1")));
    EXPECT_TRUE(read.valid);
    EXPECT_EQ(read.message, QString::fromUtf8("\u0414\u0438\u0441\u043A \U0001F4BE 100%1"));
}

TEST(ErrorClassifiers, HaveTheirWords)
{
    const QStringList words{"Message", "Warning", "Error", "Exception", "NoValue", "Information"};
    for (int value = 0; value < words.size(); ++value) {
        EXPECT_EQ(ErrorDescriptor::Image(static_cast<ErrorDescriptor::ErrorClassifier>(value)), words.at(value));
        EXPECT_EQ(ErrorDescriptor::ImageToValue(words.at(value)), value);
    }
    for (const int value : {-1, 6, 1000000})
        EXPECT_EQ(ErrorDescriptor::Image(static_cast<ErrorDescriptor::ErrorClassifier>(value)), "");
    EXPECT_EQ(ErrorDescriptor::ImageToValue(""), ErrorDescriptor::NoValue);
}

TEST(ErrorStrings, AreSplitWhereAValueHoldsSeveral)
{
    EXPECT_EQ(ErrorDescriptor::Split("a||b||c"), (QList<QString>{"a", "b", "c"}));
    EXPECT_EQ(ErrorDescriptor::Split("a|b"), QList<QString>{"a|b"});
    EXPECT_EQ(ErrorDescriptor::Split(""), QList<QString>{""});
    EXPECT_EQ(ErrorDescriptor::Split("||a||||b||"), (QList<QString>{"", "a", "", "b", ""}));
}

} // namespace
