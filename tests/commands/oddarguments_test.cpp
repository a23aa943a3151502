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
using testing::ElementsAre;
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
                admin.copyRecord(device, record, 0, 8, "x"),     admin.requestRecordDataDetail(device, record),
                admin.overviewSpectrumStreamed(device, record, 0, 8, 1, 2, KorveDataTypes::eFFT_Window::Hanning,
                                               QStringLiteral("127.0.0.1"), 9)};
    }
    /// Those that control a replay.
    std::vector<unsigned long> controlNumbers(const QString &device, const QString &record) const
    {
        auto &replay = *world.replay;
        return {replay.StartReplay(device, record, KORVE_RecordData::VUHF_200k, 0, 8, 1),
                replay.PauseReplay(device, record), replay.ContinueReplay(device, record),
                replay.StopReplay(device, record)};
    }
    std::string formatOf(const QString &device, const QString &record) const
    {
        QString error;
        return (world.exports->recordDataFormat(device, record, error) + error).toStdString();
    }
    /// The device and the channel of that id.
    bool haveNoInterface(const QString &id) const
    {
        const TQ_KRV::IF_KRV_c_KRV_var manager = world.manager->GetKorveInterface();
        const TQ_KRV::IF_KORVE_Replay_var device = manager->getKorveReplayInterface(id.toUtf8());
        const TQ_KRV::IF_KRV_c_Chan_var channel = manager->getKorveChannelInterface(id.toUtf8());
        return CORBA::is_nil(device) && CORBA::is_nil(channel);
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
    EXPECT_THAT(numbers(odd, world.record), Each(Eq(500u)));
    EXPECT_THAT(controlNumbers(odd, world.record), ElementsAre(769u, 771u, 767u, 756u));
    EXPECT_EQ(world.admin->SaveBookmarksToKorve(odd, world.record, {}), 211u);
    EXPECT_EQ(world.admin->DeleteBookmarksFromKorve(odd, world.record, {}), 211u);
    EXPECT_EQ(world.admin->SetDeviceTime(odd, 1), 500u);
    EXPECT_EQ(numberOfRecord(odd, world.record), 500u);
    EXPECT_TRUE(haveNoInterface(odd));
    EXPECT_FALSE(world.exports->cancelExport(odd));
    EXPECT_FALSE(world.admin->restorePelinFilegroup(odd, world.record, odd));
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
    EXPECT_THAT(controlNumbers(world.device, odd), ElementsAre(766u, 771u, 767u, 760u));
    EXPECT_EQ(world.admin->SaveBookmarksToKorve(world.device, odd, {BookmarkEntry()}), 211u);
    EXPECT_EQ(world.admin->DeleteBookmarksFromKorve(world.device, odd, {BookmarkEntry()}), 211u);
    EXPECT_EQ(numberOfRecord(world.device, odd), 501u);
    EXPECT_EQ(formatOf(world.device, odd), "The record is not available.");
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

TEST_P(OddWords, NameACopy)
{
    QString copy;
    TQ_KRV::seqFILE_PART_var parts = new TQ_KRV::seqFILE_PART(1);
    parts->length(1);
    parts[0u] = {0, 8};
    ASSERT_EQ(world.admin->CopyRecord(world.device, world.record, copy, parts, GetParam().text), 0u);
    KORVE_RecordData made;
    ASSERT_EQ(world.admin->getRecord(world.device, copy, made), 0u);
    EXPECT_EQ(made.GetRecordName(), GetParam().text);
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

TEST_F(WholeWay, RefusesTimesAndPlacesBeyondTheSignedOnes)
{
    for (const unsigned long long far : {1ull << 63, ~0ull}) {
        const auto place = static_cast<long long>(far);
        EXPECT_EQ(world.admin->SetDeviceTime(world.device, far), 10002u);
        EXPECT_EQ(world.admin->copyRecord(world.device, world.record, 0, place, "x"), 10027u);
        EXPECT_EQ(world.admin->overviewSpectrumStreamed(world.device, world.record, 0, place, 1, 2,
                                                        KorveDataTypes::eFFT_Window::Hanning,
                                                        QStringLiteral("127.0.0.1"), 9),
                  10002u);
        world.openChannel();
        EXPECT_EQ(world.replay->StartReplay(world.device, world.record, KORVE_RecordData::VUHF_200k, 0, far, 1), 10002u);
    }
    EXPECT_EQ(world.status(), TQ_KORVE::rsIDLE);
}

TEST_F(WholeWay, SaysThatABookmarkIsThereAlready)
{
    const BookmarkEntry bookmark = bookmarked(QStringLiteral("first"));
    ASSERT_EQ(world.admin->SaveBookmarksToKorve(world.device, world.record, {bookmark}), 0u);
    EXPECT_EQ(world.admin->SaveBookmarksToKorve(world.device, world.record, {bookmark}), 211u);
    EXPECT_FALSE(world.admin->OutcomeIsUnknown());
    EXPECT_EQ(world.bookmarks(bookmark.GetTimestamp()), 1);
    EXPECT_EQ(world.admin->SaveBookmarksToKorve(world.device, world.record, {bookmark, bookmarked("second")}), 211u);
    EXPECT_TRUE(world.admin->OutcomeIsUnknown()); // of each of the two
}

TEST_F(WholeWay, TakesNoBookmarksAndAsManyAsThereMayBe)
{
    constexpr int most = 100000; // of a record
    EXPECT_EQ(world.admin->SaveBookmarksToKorve(world.device, world.record, {}), 0u);
    EXPECT_EQ(world.admin->DeleteBookmarksFromKorve(world.device, world.record, read().GetBookmarkEntry()), 0u);
    QVector<BookmarkEntry> bookmarks(most);
    for (int n = 0; n < most; ++n) {
        bookmarks[n].SetTimestamp(static_cast<unsigned long long>(n));
        bookmarks[n].SetBookmark(QStringLiteral("bookmark %1").arg(n));
    }
    ASSERT_EQ(world.admin->SaveBookmarksToKorve(world.device, world.record, bookmarks), 0u);
    EXPECT_EQ(world.admin->SaveBookmarksToKorve(world.device, world.record, {bookmarked("one more")}), 211u);
    startRecorderAgain();
    EXPECT_EQ(read().GetBookmarkEntry(), bookmarks);
    EXPECT_EQ(world.admin->DeleteBookmarksFromKorve(world.device, world.record, bookmarks), 0u);
    EXPECT_TRUE(read().GetBookmarkEntry().isEmpty());
}

TEST_F(WholeWay, RefusesReferencesToNothing)
{
    EXPECT_FALSE(world.exports->exportRecord(TQ_KRV::IF_ExportCallback::_nil()));
    const TQ_KRV::IF_KRV_c_KRV_var manager = world.manager->GetKorveInterface();
    const auto nobody = TQ_KRV::IF_KRV_c_ChanMan::_nil();
    CORBA::String_var id;
    EXPECT_THROW(manager->registerChannel(nobody, TQ_KRV::drHF_20k, TQ_KRV::dfRAW, true, true, "", id.out()),
                 TQ_KRV::exGen);
    EXPECT_THROW(manager->registerReceiverChannel(nobody, TQ_KRV::drHF_20k, TQ_KRV::dfRAW, true, true, "", "REC1",
                                                  TQ_KRV::TCP_IF, "", id.out()),
                 TQ_KRV::exGen);
    EXPECT_THROW(world.recorder->announceNotificationReceiver(TQ_KORVE_IT::IF_Korve_IT::_nil()), CORBA::BAD_PARAM);
    KORVE_RecordData record;
    EXPECT_EQ(world.admin->getRecord(world.device, world.record, record), 0u); // all is well besides
}

} // namespace
