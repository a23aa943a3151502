#include "korvebase/traceerror.h"

#include "korvebase/errorflows.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QTranslator>

using KorveManagement::TraceError;
using testing::IsEmpty;

namespace
{

constexpr int lastType = TraceError::History;

/// What Qt itself says while this lives; QString::arg speaks up when there is nothing to fill.
class QtMessages
{
public:
    QtMessages()
    {
        messages.clear();
        before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &text) { messages.append(text); });
    }
    ~QtMessages() { qInstallMessageHandler(before); }

    static inline QStringList messages;

private:
    QtMessageHandler before;
};

/// Speaks a language that has one sentence for everything.
class OneSentence : public QTranslator
{
public:
    explicit OneSentence(const QString &sentence) : sentence(sentence) { QCoreApplication::installTranslator(this); }
    ~OneSentence() override { QCoreApplication::removeTranslator(this); }
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *, const char *, int) const override
    {
        return qstrcmp(context, "QObject") == 0 ? sentence : QString();
    }

private:
    const QString sentence;
};

TEST(ErrorSentences, TakeNoTextForAPlaceToFill)
{
    EXPECT_EQ(TraceError::toText(10015, TraceError::Admin, "R%1 %2"),
              "Id: 10015 : The access to a record failed. R%1 %2");
    EXPECT_EQ(TraceError::toText(10012, TraceError::GetBookmark, "%1"),
              "Id: 10012 : Could not get a bookmark, as a record with the specified record id '%1' does not exist.");
    EXPECT_EQ(
        TraceError::toText(7, TraceError::FirmwareVersion, "%2"),
        "Id: 7 : Could not retrieve the Firmware Version from the Korve device %2 with errorId 7. Cannot determine "
        "interface of device so disconnecting.");
}

TEST(ErrorSentences, KeepTheirMarkWhereNothingFillsIt)
{
    EXPECT_EQ(TraceError::toText(850, TraceError::StartRecording, "R1"),
              "Id: 850 : Channel is not ready for recording %1.");
}

TEST(ErrorSentences, AreMadeWithoutAWarningWhetherOrNotTheyHaveAMark)
{
    QtMessages qt;
    for (int type = 0; type <= lastType; ++type) {
        for (unsigned long id = 0; id <= 20005; ++id)
            TraceError::toText(id, static_cast<TraceError::MethodCallType>(type), "R1");
    }
    EXPECT_THAT(QtMessages::messages, IsEmpty());
}

TEST(ErrorSentences, AreEmptyOnlyForAFlowThatThereIsNot)
{
    for (const int type : {-1, lastType + 1, 1000000})
        EXPECT_EQ(TraceError::toText(210, static_cast<TraceError::MethodCallType>(type), "R1"), "");
    for (int type = 0; type <= lastType; ++type)
        EXPECT_NE(TraceError::toText(4294967296, static_cast<TraceError::MethodCallType>(type), "R1"), "");
}

TEST(ErrorSentences, HaveTheNumberWhole)
{
    EXPECT_EQ(TraceError::toText(18446744073709551615U, TraceError::Admin, ""),
              "Id: 18446744073709551615 : Text for error id cannot be determined.");
}

TEST(ErrorSentences, OfTheHistoryAloneHaveNothingInFrontOfAnUnknownNumber)
{
    EXPECT_EQ(TraceError::toText(6, TraceError::History, "R1"), "Error ID Id: 6 :  not found");
}

TEST(ErrorSentences, AreTranslatedWhenTheyAreAskedFor)
{
    OneSentence translator("Satz ohne Rest: %1");
    EXPECT_EQ(TraceError::toText(10013, TraceError::Admin, "R1"), "Id: 10013 : Satz ohne Rest: R1");
    EXPECT_EQ(TraceError::toText(6, TraceError::History, "R1"), "Satz ohne Rest: Id: 6 : ");
}

TEST(ErrorSentences, MayLoseTheirMarkInTranslation)
{
    OneSentence translator("Satz");
    QtMessages qt;
    EXPECT_EQ(TraceError::toText(10013, TraceError::Admin, "R1"), "Id: 10013 : Satz");
    EXPECT_THAT(QtMessages::messages, IsEmpty());
}

constexpr korve::ErrorText rows[] = {{2, "two"}, {5, "five"}, {9, "nine"}};
constexpr korve::ErrorText disordered[] = {{2, "two"}, {9, "nine"}, {5, "five"}};
constexpr korve::ErrorText repeated[] = {{2, "two"}, {2, "two"}};

TEST(ErrorTexts, AreFoundByTheirNumber)
{
    for (const auto &row : rows)
        EXPECT_EQ(korve::findText(rows, row.id), row.text);
    for (const unsigned long absent : {0UL, 1UL, 3UL, 8UL, 10UL, 4294967298UL})
        EXPECT_EQ(korve::findText(rows, absent), nullptr);
    EXPECT_EQ(korve::findText({}, 2), nullptr);
}

TEST(ErrorTexts, ProveTheirOrder)
{
    EXPECT_TRUE(korve::isInOrder(rows));
    EXPECT_TRUE(korve::isInOrder({}));
    EXPECT_FALSE(korve::isInOrder(disordered));
    EXPECT_FALSE(korve::isInOrder(repeated));
}

} // namespace
