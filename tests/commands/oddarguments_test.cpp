#include "objectmodel/bookmarkentry.h"
#include "objectmodel/historyentry.h"
#include "objectmodel/korve_recorddata.h"
#include "tests/commands/world.h"
#include "tests/installation/manager/wavfile.h"
#include "tests/installation/program/installationfixture.h"

#include <QtTest/QTest>

using KORVE_XML::BookmarkEntry;
using KORVE_XML::KORVE_RecordData;
using testing::Each;
using testing::Eq;

namespace
{

/// Commands about one record through the whole way.
class WholeWay : public InstallationFixture
{
protected:
    static void SetUpTestSuite()
    {
        InstallationFixture::SetUpTestSuite();
        ASSERT_TRUE(managerKnowsTheDevice());
        ASSERT_EQ(import({writeWavFile(shared->folder.path(), QStringLiteral("one.wav"), 1000)}).exitCode, 0);
    }

    KORVE_RecordData read() const
    {
        KORVE_RecordData record;
        EXPECT_EQ(world.admin->getRecord(world.device, world.record, record), 0u);
        return record;
    }
    /// Everything that was kept in memory only is forgotten. Returns when the manager has found the recorder again.
    void startRecorderAgain() const
    {
        process("recorder")->kill();
        process("recorder") = start("recorder");
        KORVE_RecordData record;
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return world.admin->getRecord(world.device, world.record, record) == 0; }, 30000));
    }

    World world{recordIds().value(0)};
};

struct OddText {
    const char *name;
    QString text;
};

void PrintTo(const OddText &text, std::ostream *out)
{
    *out << text.name;
}

const std::vector<OddText> oddTexts{
    {"AtSign", "R@1"},
    {"Slashes", "../../etc/passwd"},
    {"Marks", "%1 %2 %99 %L1"},
    {"Quotes", "\"'`\\"},
    {"UmlautsAndEuro", QString::fromUtf8("Übung, 5 €")},
    {"Cyrillic", QString::fromUtf8("Запись №1")},
    {"Emoji", QString::fromUtf8("\xF0\x9F\x98\x80 \xF0\x9F\x8F\xB4 and \xF0\x9D\x84\x9E")},
    {"Markup", "</RecordName>&amp;<![CDATA["},
    {"ControlCharacters", "a\tb\nc\x1b[31m"},
    {"Blanks", "  "},
    {"TenThousandLetters", QString(10000, QLatin1Char('x'))},
};

const auto nameOfText = [](const testing::TestParamInfo<OddText> &info) { return std::string(info.param.name); };

class OddIdentifier : public WholeWay, public testing::WithParamInterface<OddText>
{
protected:
    /// What all commands answer that are about a record.
    std::vector<unsigned long> numbers(const QString &device, const QString &record) const
    {
        auto &admin = *world.admin;
        return {admin.SetRecordComment(device, record, "x"),     admin.SetRecordDeletableFlag(device, record, true),
                admin.addHistory(device, record, "x"),           admin.SaveHistoryEntryToKorve(device, record, "x"),
                admin.removeHistoryEntry(device, record, 1),     admin.DeleteHistoryEntryFromKorve(device, record, 1),
                admin.copyRecord(device, record, 0, 8, "x")};
    }
    unsigned long numberOfRecord(const QString &device, const QString &record) const
    {
        KORVE_RecordData found;
        return world.admin->getRecord(device, record, found);
    }
};

TEST_P(OddIdentifier, OfADeviceIsUnknown)
{
    const QString &odd = GetParam().text;
    EXPECT_THAT(numbers(odd, world.record), Each(Eq(10002u)));
    EXPECT_EQ(world.admin->SaveBookmarksToKorve(odd, world.record, {}), 211u);
    EXPECT_EQ(numberOfRecord(odd, world.record), 500u);
    EXPECT_FALSE(world.exports->deleteRecord(odd, world.record));
    EXPECT_EQ(world.exports->deviceID(odd), QString());
    QVector<KORVE_RecordData> records;
    EXPECT_EQ(world.manager->getAllRecords(odd, records), 202u);
    EXPECT_EQ(numberOfRecord(world.device, world.record), 0u); // all is well besides
}

TEST_P(OddIdentifier, OfARecordIsUnknown)
{
    const QString &odd = GetParam().text;
    EXPECT_THAT(numbers(world.device, odd), Each(Eq(10012u)));
    EXPECT_EQ(world.admin->SaveBookmarksToKorve(world.device, odd, {BookmarkEntry()}), 211u);
    EXPECT_EQ(numberOfRecord(world.device, odd), 501u);
    EXPECT_FALSE(world.exports->deleteRecord(world.device, odd));
    EXPECT_EQ(numberOfRecord(world.device, world.record), 0u);
}

INSTANTIATE_TEST_SUITE_P(Texts, OddIdentifier, testing::ValuesIn([] {
                             std::vector<OddText> texts = oddTexts;
                             texts.push_back({"Empty", QString()});
                             return texts;
                         }()),
                         nameOfText);

/// Later than all before.
BookmarkEntry bookmarked(const QString &words)
{
    static unsigned long long time = 0;
    BookmarkEntry bookmark;
    bookmark.SetTimestamp(++time);
    bookmark.SetBookmark(words);
    return bookmark;
}

class OddWords : public WholeWay, public testing::WithParamInterface<OddText>
{
};

TEST_P(OddWords, ComeBackAsTheyWent)
{
    const QString &words = GetParam().text;
    ASSERT_EQ(world.admin->SetRecordComment(world.device, world.record, words), 0u);
    ASSERT_EQ(world.admin->SaveBookmarksToKorve(world.device, world.record, {bookmarked(words)}), 0u);
    ASSERT_EQ(world.admin->addHistory(world.device, world.record, words), 0u);
    const KORVE_RecordData record = read();
    EXPECT_EQ(record.GetRecordName(), words);
    EXPECT_EQ(record.GetBookmarkEntry().last().GetBookmark(), words);
    EXPECT_EQ(record.GetHistoryEntry().last().GetHistoryEntry(), words);
}

INSTANTIATE_TEST_SUITE_P(Texts, OddWords, testing::ValuesIn(oddTexts), nameOfText);

TEST_F(WholeWay, KeepsOddWordsOnTheDisk)
{
    for (const OddText &odd : oddTexts) {
        ASSERT_EQ(world.admin->SaveBookmarksToKorve(world.device, world.record, {bookmarked(odd.text)}), 0u);
        ASSERT_EQ(world.admin->addHistory(world.device, world.record, odd.text), 0u);
        ASSERT_EQ(world.admin->SetRecordComment(world.device, world.record, odd.text), 0u);
    }
    const KORVE_RecordData before = read();
    startRecorderAgain();
    EXPECT_EQ(read(), before);
}

TEST_F(WholeWay, KeepsTimesBeyondTheSignedOnes)
{
    QVector<BookmarkEntry> bookmarks(3);
    bookmarks[0].SetTimestamp((1ull << 63) - 1);
    bookmarks[1].SetTimestamp(1ull << 63);
    bookmarks[2].SetTimestamp(~0ull);
    for (BookmarkEntry &bookmark : bookmarks)
        bookmark.SetBookmark("x");
    ASSERT_EQ(world.admin->SaveBookmarksToKorve(world.device, world.record, bookmarks), 0u);
    startRecorderAgain();
    const QVector<BookmarkEntry> found = read().GetBookmarkEntry();
    EXPECT_EQ(found.mid(found.size() - bookmarks.size()), bookmarks);
    EXPECT_EQ(world.admin->DeleteBookmarksFromKorve(world.device, world.record, bookmarks), 0u);
    EXPECT_EQ(world.admin->DeleteHistoryEntryFromKorve(world.device, world.record, ~0ull), 10002u);
}

} // namespace
