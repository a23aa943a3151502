#include "tests/valuetreelib/treetestsupport.h"
#include "valuetreelib/valuefactory.h"
#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueselection.h"

#include <gtest/gtest.h>

#include <QByteArray>

namespace
{
using namespace values;
using testing::ElementsAre;
using testing::IsEmpty;

std::string bytes(const char *hex)
{
    return QByteArray::fromHex(hex).toStdString();
}

std::string hex(const std::string &bytes)
{
    return QByteArray::fromStdString(bytes).toHex(' ').toStdString();
}

/// A value of one class with all that its state string tells, and that string written by hand.
struct StateCase {
    const char *name;
    std::unique_ptr<ValueBase> (*make)();
    const char *stateString;
};

template <typename T, typename Content> std::unique_ptr<ValueBase> holding(Content content)
{
    auto value = std::make_unique<T>();
    value->SetValue(content, nullptr);
    return value;
}

std::unique_ptr<ValueBase> selection()
{
    auto value = std::make_unique<ValueSelection>();
    value->addItem(QStringLiteral("ON"), 1.0, 7, nullptr);
    value->addItem(QString::fromUtf8("Ж"), 2.0, -2, nullptr);
    value->selectKey(7, nullptr);
    value->SetState(ValueStateSeeded, nullptr);
    return value;
}

template <typename T> std::unique_ptr<ValueBase> numeric(T content, T min, T max, T step)
{
    auto value = std::make_unique<ValueNumeric<T>>();
    value->SetMinMax(min, max, step, nullptr);
    value->SetValue(content, nullptr);
    return value;
}

const StateCase stateCases[] = {
    {"Latin1Text", [] { return holding<Value<QString>>(QString::fromUtf8("Köln")); }, "06 01 00 4b f6 6c 6e  02 08 00"},
    {"WideText", [] { return holding<Value<QString>>(QString::fromUtf8("aЖ")); }, "06 01 01 61 00 16 04  02 08 00"},
    {"EmptyText", [] { return holding<Value<QString>>(QString()); }, "02 01 00  02 08 00"},
    {"Bool", [] { return holding<Value<bool>>(true); }, "02 02 01  02 08 00"},
    {"Int", [] { return holding<Value<int>>(-2); }, "05 03 fe ff ff ff  02 08 00"},
    {"Unsigned", [] { return holding<Value<unsigned int>>(0x01020304u); }, "05 04 04 03 02 01  02 08 00"},
    {"Int64", [] { return holding<Value<qint64>>(qint64{1} << 40); }, "09 05 00 00 00 00 00 01 00 00  02 08 00"},
    {"Double", [] { return holding<Value<double>>(1.5); }, "09 06 00 00 00 00 00 00 f8 3f  02 08 00"},
    {"NumericInt", [] { return numeric<int>(3, 0, 65535, 1); },
     "0e 09 03 00 00 00 00 ff ff 00 00 01 00 00 00  05 03 03 00 00 00  02 08 00"},
    {"NumericInt64", [] { return numeric<qint64>(-1, -1, 1, 2); },
     "1a 09 05 ff ff ff ff ff ff ff ff 01 00 00 00 00 00 00 00 02 00 00 00 00 00 00 00"
     "09 05 ff ff ff ff ff ff ff ff  02 08 00"},
    {"NumericDouble", [] { return numeric<double>(0.5, -1.0, 2.0, 0.5); },
     "1a 09 06 00 00 00 00 00 00 f0 bf 00 00 00 00 00 00 00 40 00 00 00 00 00 00 e0 3f"
     "09 06 00 00 00 00 00 00 e0 3f  02 08 00"},
    {"Selection", selection,
     "33 0a 02 00 00 00"
     "07 00 00 00 00 00 00 00 00 00 00 00 00 00 f0 3f 03 00 00 00 00 4f 4e"
     "fe ff ff ff ff ff ff ff 00 00 00 00 00 00 00 40 03 00 00 00 01 16 04"
     "09 07 07 00 00 00 00 00 00 00  02 08 02"},
};

class StateString : public TreeTest, public testing::WithParamInterface<StateCase>
{
protected:
    std::unique_ptr<ValueBase> fresh() const { return ValueFactory::Instance().create(original->GetType()); }

    std::unique_ptr<ValueBase> original = GetParam().make();
    std::string expected = bytes(GetParam().stateString);
};

TEST_P(StateString, HasTheBytesOfTheContract)
{
    std::string out("before");
    original->AddObjectStateStringForTransmission(out);
    EXPECT_EQ(hex(out), hex("before" + expected)) << "appended";
    std::string recorded;
    original->AddObjectStateStringForRecording(recorded);
    EXPECT_EQ(hex(recorded), hex(expected));
}

TEST_P(StateString, BringsANewValueToTheSameState)
{
    const std::unique_ptr<ValueBase> copy = fresh();
    EXPECT_TRUE(copy->SetCommandString(expected, nullptr));
    EXPECT_TRUE(copy->Compare(original.get()));
    EXPECT_THAT(traces, IsEmpty());
}

TEST_P(StateString, IsSilentWhereItChangesNothing)
{
    LoggingObserver observer("v", log);
    original->AddObserver(&observer);
    EXPECT_TRUE(original->SetCommandString(expected, nullptr));
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_P(StateString, CutAnywhereIsRefusedOrEndsAtAFrame)
{
    std::vector<std::size_t> frameEnds{0};
    while (frameEnds.back() < expected.size())
        frameEnds.push_back(frameEnds.back() + 1 + static_cast<quint8>(expected[frameEnds.back()]));
    for (std::size_t length = 0; length < expected.size(); ++length) {
        // In memory of its own, so that a sanitizer sees a step too far.
        const std::vector<char> cut(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(length));
        const bool isWhole = std::find(frameEnds.begin(), frameEnds.end(), length) != frameEnds.end();
        traces.clear();
        EXPECT_EQ(fresh()->SetCommandString({cut.data(), cut.size()}, nullptr), isWhole) << length;
        EXPECT_EQ(traces.empty(), isWhole) << length;
    }
}

TEST_P(StateString, WithFramesThatEndTooSoonOrTooLateIsRefused)
{
    // Each frame shortened, and lengthened, by one byte, the length telling so.
    for (std::size_t start = 0; start < expected.size(); start += 1 + static_cast<quint8>(expected[start])) {
        const auto length = static_cast<quint8>(expected[start]);
        const std::string body = expected.substr(start + 1, length);
        const std::string shorter = std::string(1, static_cast<char>(length - 1)) + body.substr(0, length - 1);
        const std::string longer = std::string(1, static_cast<char>(length + 1)) + body + '\x01';
        const bool isText = body[0] == SetTextCommand; // a text goes to the end, whatever its length
        EXPECT_EQ(fresh()->SetCommandString(shorter, nullptr), isText && length > 2 && body[1] == 0) << hex(shorter);
        EXPECT_EQ(fresh()->SetCommandString(longer, nullptr), isText && body[1] == 0) << hex(longer);
    }
}

TEST_P(StateString, WithAnyOneByteChangedDoesNoHarm)
{
    for (std::size_t position = 0; position < expected.size(); ++position) {
        for (int bit = 0; bit < 8; ++bit) {
            std::vector<char> damaged(expected.begin(), expected.end());
            damaged[position] = static_cast<char>(damaged[position] ^ (1 << bit));
            const std::unique_ptr<ValueBase> value = fresh();
            value->SetCommandString({damaged.data(), damaged.size()}, nullptr);
            EXPECT_NE(value->GetState(), ValueStateDeleted);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Classes, StateString, testing::ValuesIn(stateCases),
                         [](const auto &info) { return info.param.name; });

class CommandString : public TreeTest
{
protected:
    CommandString()
    {
        text.SetName(QStringLiteral("t"), nullptr);
        text.AddObserver(&observer);
    }
    LoggingObserver observer{"v", log};
    TextValue text;
};

TEST_F(CommandString, OfAContentIsOneFrame)
{
    text.SetValue(QStringLiteral("a"), nullptr);
    EXPECT_EQ(hex(text.GetCommandStringForTransmission()), "03 01 00 61");
    EXPECT_EQ(hex(text.GetCommandStringForRecording()), "03 01 00 61");
}

TEST_F(CommandString, TellsOneChangeByItsCode)
{
    std::string out;
    text.SetState(ValueStateConnectionLost, nullptr);
    text.AddCommandForTransmission(ChangeCodeState, false, out);
    EXPECT_EQ(hex(out), "02 08 03");
    out.clear();
    text.AddCommandForTransmission(ChangeCodeDeleted, false, out);
    text.AddCommandForTransmission(ChangeCodeLimits, false, out);
    EXPECT_EQ(hex(out), "") << "codes without a command";
}

TEST_F(CommandString, ThatIsForcedIsToldAlthoughEqual)
{
    text.SetValue(QStringLiteral("a"), nullptr);
    std::string out;
    text.AddCommandForTransmission(ChangeCodeValue, true, out);
    EXPECT_EQ(hex(out), "03 81 00 61");
    taken();
    EXPECT_TRUE(text.SetCommandString(out, nullptr));
    EXPECT_THAT(taken(), ElementsAre("v 3"));
    TextValue other;
    other.AddObserver(&observer);
    EXPECT_TRUE(other.SetCommandString(out, nullptr));
    EXPECT_THAT(taken(), ElementsAre("v 3")) << "once, also where it changes something";
}

TEST_F(CommandString, ForcesStateLimitsListAndKeyToo)
{
    ValueSelection selected;
    selected.setTexts({QStringLiteral("x")}, nullptr);
    selected.selectKey(0, nullptr);
    ValueNumeric<int> number;
    for (ValueBase *value : {static_cast<ValueBase *>(&selected), static_cast<ValueBase *>(&number)}) {
        value->AddObserver(&observer);
        for (const TChangeCode code : {ChangeCodeState, ChangeCodeValue, ChangeCodeLimits, ChangeCodeSelectionItems}) {
            std::string out;
            value->AddCommandForTransmission(code, true, out);
            EXPECT_TRUE(value->SetCommandString(out, nullptr));
        }
    }
    EXPECT_THAT(taken(), ElementsAre("v 2", "v 3", "v 5", "v 2", "v 3", "v 4"));
}

TEST_F(CommandString, SkipsTheOriginator)
{
    EXPECT_TRUE(text.SetCommandString(bytes("03 01 00 62 02 08 02"), &observer));
    EXPECT_EQ(text.GetValue(), QStringLiteral("b"));
    EXPECT_EQ(text.GetState(), ValueStateSeeded);
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(CommandString, OfALongTextHasALongLength)
{
    text.SetValue(QString(252, u'x'), nullptr);
    EXPECT_EQ(hex(text.GetCommandStringForTransmission().substr(0, 4)), "fe 01 00 78");
    text.SetValue(QString(253, u'x'), nullptr);
    const std::string longForm = text.GetCommandStringForTransmission();
    EXPECT_EQ(hex(longForm.substr(0, 8)), "ff ff 00 00 00 01 00 78");
    EXPECT_EQ(longForm.size(), 5u + 255u);
    TextValue other;
    EXPECT_TRUE(other.SetCommandString(longForm, nullptr));
    EXPECT_EQ(other.GetValue(), text.GetValue());
    for (std::size_t length = 1; length < longForm.size(); ++length)
        EXPECT_FALSE(other.SetCommandString(std::string_view(longForm).substr(0, length), nullptr)) << length;
}

TEST_F(CommandString, KeepsTextsThatAreNoProperUnicode)
{
    const QChar odd[] = {QChar(0xD800), QChar(0), QChar(0xFFFF), QChar('a')};
    text.SetValue(QString(odd, 4), nullptr);
    TextValue other;
    EXPECT_TRUE(other.SetCommandString(text.GetCommandStringForTransmission(), nullptr));
    EXPECT_EQ(other.GetValue(), text.GetValue());
}

struct MalformedCase {
    const char *name;
    ValueType type;
    const char *frames;
};

class MalformedCommand : public TreeTest, public testing::WithParamInterface<MalformedCase>
{
};

TEST_P(MalformedCommand, IsRefusedWithATrace)
{
    const std::unique_ptr<ValueBase> value = ValueFactory::Instance().create(GetParam().type);
    const std::unique_ptr<ValueBase> untouched = ValueFactory::Instance().create(GetParam().type);
    EXPECT_FALSE(value->SetCommandString(bytes(GetParam().frames), nullptr));
    EXPECT_TRUE(value->Compare(untouched.get()));
    EXPECT_EQ(traces.size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, MalformedCommand,
    testing::Values(MalformedCase{"FrameWithoutBody", ValueTypeText, "00"},
                    MalformedCase{"HugeLength", ValueTypeText, "ff ff ff ff ff 01 00"},
                    MalformedCase{"CommandZero", ValueTypeText, "01 00"},
                    MalformedCase{"CommandOfLaterUse", ValueTypeText, "01 3f"},
                    MalformedCase{"FlagWithoutCommand", ValueTypeText, "01 80"},
                    MalformedCase{"TextWithoutForm", ValueTypeText, "01 01"},
                    MalformedCase{"TextOfUnknownForm", ValueTypeText, "03 01 02 61"},
                    MalformedCase{"HalfACharacter", ValueTypeText, "03 01 01 61"},
                    MalformedCase{"FlagOfTwo", ValueTypeBool, "02 02 02"},
                    MalformedCase{"ContentOfAnotherClass", ValueTypeBool, "03 01 00 61"},
                    MalformedCase{"Int64ForDouble", ValueTypeDouble, "09 05 00 00 00 00 00 01 00 00"},
                    MalformedCase{"StateDeleted", ValueTypeInt, "02 08 01"},
                    MalformedCase{"StateUnknown", ValueTypeInt, "02 08 10"},
                    MalformedCase{"StateNegative", ValueTypeInt, "02 08 ff"},
                    MalformedCase{"LimitsOfAnotherType", ValueTypeNumericInt,
                                  "0e 09 04 00 00 00 00 01 00 00 00 01 00 00 00"},
                    MalformedCase{"LimitsOfAPlainValue", ValueTypeInt, "0e 09 03 00 00 00 00 01 00 00 00 01 00 00 00"},
                    MalformedCase{"FourBillionItems", ValueTypeSelection, "05 0a ff ff ff ff"},
                    MalformedCase{"ItemTextTooLong", ValueTypeSelection,
                                  "1b 0a 01 00 00 00 07 00 00 00 00 00 00 00 00 00 00 00 00 00 f0 3f 03 00 00 00 00 00"},
                    MalformedCase{"ItemTextHuge", ValueTypeSelection,
                                  "1a 0a 01 00 00 00 07 00 00 00 00 00 00 00 00 00 00 00 00 00 f0 3f ff ff ff ff 00"},
                    MalformedCase{"MapCommand", ValueTypeText, "01 16"}),
    [](const auto &info) { return info.param.name; });

TEST_F(CommandString, OfALaterVersionIsSkipped)
{
    EXPECT_TRUE(text.SetCommandString(bytes("03 40 aa bb 03 01 00 61 01 ff"), nullptr));
    EXPECT_EQ(text.GetValue(), QStringLiteral("a"));
}

TEST_F(CommandString, AppliesWhatComesBeforeABrokenFrame)
{
    EXPECT_FALSE(text.SetCommandString(bytes("03 01 00 61 09 01 00 62"), nullptr));
    EXPECT_EQ(text.GetValue(), QStringLiteral("a"));
    EXPECT_THAT(traces, ElementsAre(QStringLiteral("t: incomplete command frame")));
    EXPECT_TRUE(text.SetCommandString({}, nullptr)) << "no frame at all is fine";
}

TEST_F(CommandString, SaysWhichCommandItRefuses)
{
    EXPECT_FALSE(text.SetCommandString(bytes("02 82 01"), nullptr));
    EXPECT_THAT(traces, ElementsAre(QStringLiteral("t (Text): command 2 is malformed or of another class")));
}

TEST_F(CommandString, WithAKeyThatCannotBeSelectedIsWellFormed)
{
    ValueSelection selected;
    selected.setTexts({QStringLiteral("x")}, nullptr);
    EXPECT_TRUE(selected.SetCommandString(bytes("09 07 05 00 00 00 00 00 00 00"), nullptr));
    EXPECT_EQ(selected.GetCurrentKey(), -1);
    EXPECT_EQ(traces.size(), 1u);
    selected.selectKey(0, nullptr);
    EXPECT_TRUE(selected.SetCommandString(bytes("09 07 ff ff ff ff ff ff ff ff"), nullptr)) << "none";
    EXPECT_EQ(selected.GetCurrentKey(), -1);
    EXPECT_EQ(traces.size(), 1u);
}

TEST_F(CommandString, SurvivesAnObserverThatRemovesTheValueBetweenFrames)
{
    auto *const inTree = add<TextValue>(QStringLiteral("/a"), QStringLiteral("v"));
    inTree->AddObserver(&observer);
    observer.react = [this] { tree.removeValue(QStringLiteral("/a/v")); };
    EXPECT_TRUE(inTree->SetCommandString(bytes("03 01 00 61 02 08 02"), nullptr));
    EXPECT_THAT(taken(), ElementsAre("v 3", "v 2", "v 18"));
}

TEST_F(CommandString, SurvivesAnObserverThatEndsAValueOfNoTreeBetweenFrames)
{
    auto value = std::make_unique<TextValue>();
    value->AddObserver(&observer);
    observer.react = [&value] { value.reset(); };
    EXPECT_TRUE(value->SetCommandString(bytes("03 01 00 61 02 08 02"), nullptr));
    EXPECT_THAT(taken(), ElementsAre("v 3"));
}
} // namespace
