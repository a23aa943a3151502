#include "korvebase/traceerror.h"

#include "tests/korvebase/errortexttable.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QTranslator>

using KorveManagement::TraceError;
using Flow = TraceError::MethodCallType;

namespace
{
constexpr unsigned long lastNumber = 21000; // beyond all numbers of the tables
const QString awkward = QString::fromUtf8("R1@A/%1 %2 %L1 '\"é📡");

enum class Filling {
    Text,          ///< the text argument for %1
    TextAndNumber, ///< also the number for %2
    Nothing,       ///< marks stay
};

struct FlowCase {
    const char *name;
    Flow flow;
    int value;
    const char *file;
    int numbers; ///< how many have a sentence of their own
    Filling filling = Filling::Text;
};

void PrintTo(const FlowCase &flow, std::ostream *out)
{
    *out << flow.name;
}

/// Swallows what Qt warns of while it lives, and counts it.
class QtWarnings
{
public:
    QtWarnings() : before(qInstallMessageHandler(count)) { counted = 0; }
    ~QtWarnings() { qInstallMessageHandler(before); }
    QtWarnings(const QtWarnings &) = delete;
    static int number() { return counted; }

private:
    static void count(QtMsgType, const QMessageLogContext &, const QString &) { ++counted; }

    static inline int counted = 0;
    const QtMessageHandler before;
};

/// Puts the pieces of @p sentence together without reading again what was filled in.
QString filled(const QString &sentence, unsigned long errorId, const QString &text, Filling filling)
{
    if (filling == Filling::Nothing)
        return sentence;
    QStringList pieces = sentence.split(QStringLiteral("%1"));
    if (filling == Filling::TextAndNumber)
        for (QString &piece : pieces)
            piece.replace(QStringLiteral("%2"), QString::number(errorId));
    return pieces.join(text);
}

QString expectedText(const FlowCase &flow, const ErrorTextTable &table, unsigned long errorId, const QString &text)
{
    const QString prefix = QStringLiteral("Id: ") + QString::number(errorId) + QStringLiteral(" : ");
    if (flow.flow == Flow::History && !table.lists(errorId))
        return filled(table.text(errorId), errorId, prefix, Filling::Text);
    return prefix + filled(table.text(errorId), errorId, text, flow.filling);
}

std::string worded(unsigned long errorId, Flow flow, const char *text = "")
{
    return TraceError::toText(errorId, flow, QString::fromUtf8(text)).toStdString();
}

class FlowText : public testing::TestWithParam<FlowCase>
{
};

INSTANTIATE_TEST_SUITE_P(
    Flows, FlowText,
    testing::Values(FlowCase{"Admin", Flow::Admin, 0, "admin", 39}, FlowCase{"Setup", Flow::Setup, 1, "setup", 4},
                    FlowCase{"FirmwareVersion", Flow::FirmwareVersion, 2, "firmwareversion", 0, Filling::TextAndNumber},
                    FlowCase{"AddBookmark", Flow::AddBookmark, 3, "addbookmark", 9},
                    FlowCase{"GetBookmark", Flow::GetBookmark, 4, "getbookmark", 6},
                    FlowCase{"RemoveBookmark", Flow::RemoveBookmark, 5, "removebookmark", 7},
                    FlowCase{"Channel", Flow::Channel, 6, "channel", 9},
                    FlowCase{"StartReplay", Flow::StartReplay, 7, "startreplay", 30},
                    FlowCase{"ControlReplay", Flow::ControlReplay, 8, "controlreplay", 16},
                    FlowCase{"StartRecording", Flow::StartRecording, 9, "startrecording", 21, Filling::Nothing},
                    FlowCase{"StopRecording", Flow::StopRecording, 10, "stoprecording", 1, Filling::Nothing},
                    FlowCase{"History", Flow::History, 11, "history", 5}),
    [](const auto &info) { return info.param.name; });

TEST_P(FlowText, IsThatOfTheTableForEveryNumber)
{
    const ErrorTextTable table(QLatin1String(GetParam().file));
    ASSERT_EQ(table.size(), GetParam().numbers);
    const QtWarnings warnings; // of a text that has no mark to fill
    for (const QString &text : {QString(), QStringLiteral("recorder-1"), awkward})
        for (unsigned long errorId = 0; errorId <= lastNumber; ++errorId)
            ASSERT_EQ(TraceError::toText(errorId, GetParam().flow, text).toStdString(),
                      expectedText(GetParam(), table, errorId, text).toStdString());
    EXPECT_EQ(QtWarnings::number(), 0);
}

TEST_P(FlowText, IsTheFallbackForNumbersThatOnlyLookListedWhenCut)
{
    const ErrorTextTable table(QLatin1String(GetParam().file));
    for (const unsigned long errorId : {(1ul << 32) + 210, (1ul << 32) + 7000, (1ul << 16) + 755, ~0ul})
        EXPECT_EQ(TraceError::toText(errorId, GetParam().flow, QStringLiteral("x")).toStdString(),
                  expectedText(GetParam(), table, errorId, QStringLiteral("x")).toStdString());
}

TEST_P(FlowText, BelongsToItsNumberOnTheInterface)
{
    EXPECT_EQ(static_cast<int>(GetParam().flow), GetParam().value);
}

TEST(ErrorText, IsEmptyForAnUnknownFlow)
{
    for (const int flow : {12, 13, -1, 1000000})
        for (const unsigned long errorId : {0ul, 210ul, 7000ul, 10012ul})
            EXPECT_EQ(worded(errorId, static_cast<Flow>(flow), "x"), "") << flow;
}

TEST(ErrorText, IsSharedByTwoNumbersOfAnUnknownRecord)
{
    for (const Flow flow : {Flow::Admin, Flow::AddBookmark, Flow::GetBookmark, Flow::RemoveBookmark})
        EXPECT_EQ(worded(10012, flow, "R7").substr(std::string("Id: 10012 : ").size()),
                  worded(20003, flow, "R7").substr(std::string("Id: 20003 : ").size()));
    EXPECT_EQ(worded(20003, Flow::Admin, "R7"), "Id: 20003 : The specified record Id doesn't match any record. R7");
    EXPECT_EQ(worded(20004, Flow::Admin, "R7"), "Id: 20004 : Text for error id cannot be determined.");
}

TEST(ErrorText, KeepsItsOddBlanksAndMarks)
{
    EXPECT_EQ(worded(10002, Flow::Admin, "x"),
              "Id: 10002 :  A method has been called with an argument which is invalid. x");
    EXPECT_EQ(worded(10002, Flow::Admin), "Id: 10002 :  A method has been called with an argument which is invalid. ");
    EXPECT_EQ(worded(300, Flow::Channel), "Id: 300 : Channel to the KorveServer is not available. ");
    EXPECT_EQ(worded(50, Flow::Setup, "D"), "Id: 50 : Corbaloc Reference connection failed. D.  Device ignored.");
    EXPECT_EQ(worded(766, Flow::StartReplay, "R7"), "Id: 766 : Failed to get the ReplaySession by Id.! R7");
    EXPECT_EQ(worded(850, Flow::StartRecording, "C1"), "Id: 850 : Channel is not ready for recording %1.");
}

TEST(ErrorText, OfAnUnknownNumberOfTheHistoryHoldsThePrefixInside)
{
    EXPECT_EQ(worded(6, Flow::History, "x"), "Error ID Id: 6 :  not found");
    EXPECT_EQ(worded(0, Flow::History), "Error ID Id: 0 :  not found");
    EXPECT_EQ(worded(5, Flow::History),
              "Id: 5 : The required transmission interface to the korve server is not available. "
              "Please try again later.");
}

TEST(ErrorText, SpeaksOfAnExistingBookmarkAlsoWhenOneIsRemoved)
{
    EXPECT_EQ(worded(10002, Flow::RemoveBookmark, "17"),
              "Id: 10002 : A bookmark entry with the specified time stamp '17' already exists.");
    EXPECT_EQ(worded(10002, Flow::GetBookmark, "17"),
              "Id: 10002 : Could not get a bookmark, as an unspecified exception occurred.");
}

TEST(ErrorText, OfRunningReplaysHasOnlyPartOfThoseOfStartedOnes)
{
    for (const unsigned long shared : {210ul, 211ul, 750ul, 758ul, 760ul, 7000ul})
        EXPECT_EQ(worded(shared, Flow::ControlReplay, "x"), worded(shared, Flow::StartReplay, "x"));
    EXPECT_EQ(worded(901, Flow::ControlReplay, "x"),
              "Id: 901 : The sequence to perform the replay operation is not correct. "
              "Cannot perform replay request! x");
    for (const unsigned long foreign : {27ul, 761ul, 766ul, 768ul, 780ul, 900ul, 902ul, 903ul, 904ul, 905ul, 906ul})
        EXPECT_EQ(worded(foreign, Flow::ControlReplay, "x"),
                  "Id: " + std::to_string(foreign) + " : Could not process get replaying request.");
}

TEST(ErrorText, OfTheFirmwareVersionHoldsDeviceAndNumber)
{
    EXPECT_EQ(worded(210, Flow::FirmwareVersion, "%2"),
              "Id: 210 : Could not retrieve the Firmware Version from the Korve device %2 with errorId 210. Cannot "
              "determine interface of device so disconnecting.");
}

/// Puts every sentence in brackets.
class Brackets : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        const QString text = QString::fromUtf8(sourceText);
        const bool isSentence = qstrcmp(context, "QObject") == 0 && !text.startsWith(QStringLiteral("Id: "));
        return isSentence ? u'[' + text + u']' : QString();
    }
    bool isEmpty() const override { return false; }
};

/// A language without marks.
class OneWord : public Brackets
{
public:
    QString translate(const char *, const char *, const char *, int) const override { return QStringLiteral("Satz"); }
};

TEST(ErrorText, IsTranslatedWhenItIsAskedFor)
{
    const std::string before = worded(10015, Flow::Admin, "R7");
    Brackets brackets;
    ASSERT_TRUE(QCoreApplication::installTranslator(&brackets));
    EXPECT_EQ(worded(6, Flow::History), "[Error ID Id: 6 :  not found]");
    EXPECT_EQ(worded(10015, Flow::Admin, "R7"), "Id: 10015 : [The access to a record failed. R7]");
    EXPECT_EQ(worded(999, Flow::Setup, "R7"), "Id: 999 : [Could not process device process request.]");
    EXPECT_EQ(worded(755, Flow::StopRecording),
              "Id: 755 : [Channel is not enabled for recording. There is nothing to do.]");
    QCoreApplication::removeTranslator(&brackets);
    EXPECT_EQ(worded(10015, Flow::Admin, "R7"), before);
}

TEST(ErrorText, MayLoseItsMarkInTranslation)
{
    OneWord language;
    ASSERT_TRUE(QCoreApplication::installTranslator(&language));
    const QtWarnings warnings;
    EXPECT_THAT(worded(10013, Flow::Admin, "R1"), testing::EndsWith("Satz"));
    EXPECT_EQ(QtWarnings::number(), 0);
    QCoreApplication::removeTranslator(&language);
}
} // namespace
