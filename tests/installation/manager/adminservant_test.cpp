#include "apps/spectrum/spectrumreader.h"
#include "tests/installation/manager/bookmarksat.h"
#include "tests/installation/manager/fakerecorder.h"
#include "tests/installation/manager/filesink.h"
#include "tests/installation/manager/managerfixture.h"
#include "tests/installation/manager/raisedkind.h"
#include "tests/installation/manager/servedobject.h"

#include "tests/installation/cco/loopbackports.h"

#include <set>

namespace
{

constexpr CORBA::ULong unknownDevice = 500;
constexpr CORBA::ULong unreachableDevice = 502;
constexpr CORBA::ULong invalidValue = 10002;
constexpr CORBA::ULong unreachable = 10009;
constexpr CORBA::ULong unknownRecord = 10012;
constexpr CORBA::ULong inconsistentCopy = 10027;
constexpr CORBA::ULong notSupported = 10019;

/// A recorder that knows only the device's own contract.
class BookmarkRecorder : public FakeRecorder
{
public:
    void addBookmark(Text, CORBA::ULongLong timestampUs, const TQ_KORVE::wideText &) override
    {
        if (!bookmarks.insert(timestampUs).second)
            throw TQ_KORVE::exKorve(TQ_KORVE::ekBOOKMARK_ALREADY_EXISTS, "there already");
    }
    void removeBookmark(Text, CORBA::ULongLong timestampUs) override
    {
        if (bookmarks.erase(timestampUs) == 0)
            throw TQ_KORVE::exKorve(TQ_KORVE::ekINVALID_VALUE, "not there");
    }
    std::set<CORBA::ULongLong> times() const { return bookmarks; }

private:
    std::set<CORBA::ULongLong> bookmarks; // changed by the test's own calls alone
};

/// With one record.
class AdminServant : public ManagerFixture
{
protected:
    AdminServant()
    {
        startManager();
        EXPECT_TRUE(becomesAvailable("REC1"));
        id = importRecord(QStringLiteral("first.wav"), 100).toLatin1();
    }

    TQ_KRV::struRECORD_DATA_var record()
    {
        TQ_KRV::struRECORD_DATA_var found;
        EXPECT_EQ(admin->getRecord("REC1", id.constData(), found.out()), 0u);
        return found;
    }

    std::optional<CORBA::CompletionStatus> completionOfAdding(const char *device, const char *record,
                                                              std::initializer_list<CORBA::ULongLong> times)
    {
        return completionBy<CORBA::BAD_PARAM>([&] { admin->addBookmarks(device, record, bookmarksAt(times)); });
    }
    std::optional<CORBA::CompletionStatus> completionOfDeleting(const char *device, const char *record,
                                                                std::initializer_list<CORBA::ULongLong> times)
    {
        return completionBy<CORBA::BAD_PARAM>([&] { admin->deleteBookmarks(device, record, bookmarksAt(times)); });
    }

    QByteArray id;
};

} // namespace

TEST_F(AdminServant, GivesARecordWithItsIndex)
{
    const TQ_KRV::struRECORD_DATA_var found = record();
    EXPECT_STREQ(found->recordID, id.constData());
    EXPECT_EQ(found->size, 200u);
    EXPECT_GE(found->indexEntries.length(), 1u);
    EXPECT_EQ(found->bookmarks.length(), 0u);
}

TEST_F(AdminServant, RaisesAnExceptionForAnUnknownRecord)
{
    TQ_KRV::struRECORD_DATA_var found;
    EXPECT_THROW(admin->getRecord("REC1", "R0", found.out()), TQ_KRV::IF_KORVE_Admin::exAdmin);
}

TEST_F(AdminServant, GivesAnEmptyRecordWithAnErrorNumber)
{
    TQ_KRV::struRECORD_DATA_var found;
    EXPECT_EQ(admin->getRecord("REC2", id.constData(), found.out()), unknownDevice);
    EXPECT_STREQ(found->recordID, "");
    stopRecorder();
    EXPECT_EQ(admin->getRecord("REC1", id.constData(), found.out()), unreachableDevice);
    EXPECT_STREQ(found->recordID, "");
}

TEST_F(AdminServant, CarriesACommentUnitByUnit)
{
    const wchar_t comment[] = {L'\u00e4', L'\u4e2d', 0xd83d, 0xde00, 0}; // the last character takes two units
    EXPECT_EQ(admin->setRecordComment("REC1", id.constData(), comment), 0u);
    const TQ_KRV::struRECORD_DATA_var found = record();
    EXPECT_STREQ(found->recordName.in(), comment);
}

TEST_F(AdminServant, TakesACharacterOf32BitsForItsTwoUnits)
{
    const wchar_t comment[] = {L'a', 0x1f600, L'b', 0};
    EXPECT_EQ(admin->setRecordComment("REC1", id.constData(), comment), 0u);
    const wchar_t units[] = {L'a', 0xd83d, 0xde00, L'b', 0};
    EXPECT_STREQ(record()->recordName.in(), units);
}

TEST_F(AdminServant, AcceptsAnEmptyComment)
{
    EXPECT_EQ(admin->setRecordComment("REC1", id.constData(), L""), 0u);
    EXPECT_STREQ(record()->recordName.in(), L"");
}

TEST_F(AdminServant, SetsAndClearsTheDeletableFlag)
{
    EXPECT_EQ(admin->setRecordDeletableFlag("REC1", id.constData(), true), 0u);
    EXPECT_TRUE(record()->deletable);
    EXPECT_EQ(admin->setRecordDeletableFlag("REC1", id.constData(), false), 0u);
    EXPECT_FALSE(record()->deletable);
    EXPECT_FALSE(admin->deleteRecord("REC1", id.constData()));
}

TEST_F(AdminServant, DeletesARecordThatIsDeletable)
{
    ASSERT_EQ(admin->setRecordDeletableFlag("REC1", id.constData(), true), 0u);
    EXPECT_TRUE(admin->deleteRecord("REC1", id.constData()));
    EXPECT_FALSE(admin->deleteRecord("REC1", id.constData()));
}

TEST_F(AdminServant, AddsAndDeletesBookmarks)
{
    admin->addBookmarks("REC1", id.constData(), bookmarksAt({20, 10}));
    const TQ_KRV::struRECORD_DATA_var marked = record();
    ASSERT_EQ(marked->bookmarks.length(), 2u);
    EXPECT_STREQ(marked->bookmarks[0].bookmark.in(), L"mark");
    admin->deleteBookmarks("REC1", id.constData(), bookmarksAt({10}));
    const TQ_KRV::struRECORD_DATA_var left = record();
    ASSERT_EQ(left->bookmarks.length(), 1u);
    EXPECT_EQ(left->bookmarks[0].timestamp, 20u);
}

TEST_F(AdminServant, AddsTheBookmarksBehindOneThatIsThere)
{
    admin->addBookmarks("REC1", id.constData(), bookmarksAt({10}));
    EXPECT_EQ(completionOfAdding("REC1", id.constData(), {10, 20}), CORBA::COMPLETED_MAYBE);
    EXPECT_EQ(record()->bookmarks.length(), 2u);
}

TEST_F(AdminServant, SaysWhenNoneOfTheBookmarksIsTaken)
{
    admin->addBookmarks("REC1", id.constData(), bookmarksAt({10, 20}));
    EXPECT_EQ(completionOfAdding("REC1", id.constData(), {10}), CORBA::COMPLETED_NO);
    EXPECT_EQ(completionOfAdding("REC1", id.constData(), {20, 10}), CORBA::COMPLETED_NO);
    EXPECT_EQ(completionOfAdding("REC1", "R0", {30}), CORBA::COMPLETED_NO);
    EXPECT_EQ(completionOfAdding("REC2", id.constData(), {30}), CORBA::COMPLETED_NO);
    EXPECT_EQ(completionOfDeleting("REC1", id.constData(), {30}), CORBA::COMPLETED_NO);
    EXPECT_EQ(completionOfDeleting("REC1", "R0", {10}), CORBA::COMPLETED_NO);
    EXPECT_EQ(record()->bookmarks.length(), 2u);
}

TEST_F(AdminServant, TakesAsManyBookmarksAsARecordMayHave)
{
    constexpr CORBA::ULong most = 100000;
    TQ_KRV::seqBookmarks bookmarks(most);
    bookmarks.length(most);
    for (CORBA::ULong number = 0; number < most; ++number) {
        bookmarks[number].timestamp = most - number;
        bookmarks[number].bookmark = L"mark";
    }
    configuration.timing.callLimit = std::chrono::seconds(60);
    startManager();
    ASSERT_TRUE(becomesAvailable("REC1"));
    admin->addBookmarks("REC1", id.constData(), bookmarks);
    const TQ_KRV::struRECORD_DATA_var full = record();
    ASSERT_EQ(full->bookmarks.length(), most);
    EXPECT_EQ(full->bookmarks[0].timestamp, 1u);
    EXPECT_EQ(completionOfAdding("REC1", id.constData(), {most + 1}), CORBA::COMPLETED_NO);
    admin->deleteBookmarks("REC1", id.constData(), bookmarks);
    EXPECT_EQ(record()->bookmarks.length(), 0u);
}

TEST_F(AdminServant, DeletesTheBookmarksBehindOneThatIsNotThere)
{
    admin->addBookmarks("REC1", id.constData(), bookmarksAt({10, 20}));
    EXPECT_EQ(completionOfDeleting("REC1", id.constData(), {15, 20}), CORBA::COMPLETED_MAYBE);
    EXPECT_EQ(record()->bookmarks.length(), 1u);
}

TEST_F(AdminServant, ChangesBookmarksOneByOneWhereNothingElseIsKnown)
{
    const ServedObject<BookmarkRecorder> plain(cco, "KorveRecorder/PLAIN/IF_Control");
    ASSERT_TRUE(becomesAvailable("PLAIN"));
    admin->addBookmarks("PLAIN", "R1", bookmarksAt({10, 20}));
    EXPECT_EQ(completionOfAdding("PLAIN", "R1", {20, 30}), CORBA::COMPLETED_MAYBE);
    EXPECT_THAT(plain->times(), testing::ElementsAre(10, 20, 30));
    EXPECT_EQ(completionOfAdding("PLAIN", "R1", {20, 30}), CORBA::COMPLETED_NO);
    EXPECT_EQ(completionOfDeleting("PLAIN", "R1", {15, 20}), CORBA::COMPLETED_MAYBE);
    EXPECT_THAT(plain->times(), testing::ElementsAre(10, 30));
    EXPECT_EQ(completionOfDeleting("PLAIN", "R1", {15, 20}), CORBA::COMPLETED_NO);
    service.reset();
}

TEST_F(AdminServant, TakesNoBookmarksAtAll)
{
    EXPECT_NO_THROW(admin->addBookmarks("REC1", id.constData(), {}));
    EXPECT_THROW(admin->addBookmarks("REC2", id.constData(), {}), CORBA::BAD_PARAM);
}

TEST_F(AdminServant, AddsAndRemovesHistory)
{
    const CORBA::ULong before = record()->history.length();
    EXPECT_EQ(admin->addHistory("REC1", id.constData(), L"looked at"), 0u);
    const TQ_KRV::struRECORD_DATA_var found = record();
    ASSERT_EQ(found->history.length(), before + 1);
    EXPECT_STREQ(found->history[before].historyEntry.in(), L"looked at");
    EXPECT_EQ(admin->removeHistoryEntry("REC1", id.constData(), found->history[before].timestamp), 0u);
    EXPECT_EQ(record()->history.length(), before);
}

TEST_F(AdminServant, TellsTheTimeOfTheDevice)
{
    CORBA::ULongLong time = 0;
    CORBA::Boolean synchronized = false;
    EXPECT_EQ(admin->getDeviceTime("REC1", time, synchronized), 0u);
    EXPECT_GT(time, 0u);
    EXPECT_EQ(admin->getDeviceTime("REC2", time, synchronized), unknownDevice);
    EXPECT_EQ(time, 0u);
}

TEST_F(AdminServant, NamesAnUnknownDeviceAsSuch)
{
    EXPECT_EQ(admin->setRecordComment("REC2", id.constData(), L"text"), unknownDevice);
    EXPECT_EQ(admin->setRecordDeletableFlag("REC2", id.constData(), true), unknownDevice);
    EXPECT_EQ(admin->addHistory("REC2", id.constData(), L"text"), unknownDevice);
    EXPECT_EQ(admin->removeHistoryEntry("REC2", id.constData(), 1), unknownDevice);
    EXPECT_EQ(admin->getOverviewSpectrumStreamed("REC2", id.constData(), 0, 200, 1, 16, TQ_KRV::wmKaiser, "127.0.0.1", 9),
              unknownDevice);
}

TEST_F(AdminServant, GivesTheRecordersOwnReasons)
{
    EXPECT_EQ(admin->setRecordComment("REC1", "R0", L"text"), unknownRecord);
    EXPECT_EQ(admin->addHistory("REC1", "R0", L"text"), unknownRecord);
}

TEST_F(AdminServant, CopiesARecord)
{
    CORBA::String_var copy;
    TQ_KRV::seqCopySection sections(1);
    sections.length(1);
    sections[0] = {0, 20};
    ASSERT_EQ(admin->copyRecord("REC1", id.constData(), sections, L"copy", copy.out()), 0u);
    TQ_KRV::struRECORD_DATA_var copied;
    ASSERT_EQ(admin->getRecord("REC1", copy, copied.out()), 0u);
    EXPECT_EQ(copied->size, 20u);
    EXPECT_STREQ(copied->recordName.in(), L"copy");
}

TEST_F(AdminServant, SaysWhyThereIsNoCopy)
{
    CORBA::String_var copy;
    EXPECT_EQ(admin->copyRecord("REC1", id.constData(), {}, L"copy", copy.out()), inconsistentCopy);
    EXPECT_STREQ(copy, "");
    TQ_KRV::seqCopySection sections(1);
    sections.length(1);
    sections[0] = {0, 20};
    EXPECT_EQ(admin->copyRecord("REC1", "R0", sections, L"copy", copy.out()), unknownRecord);
    EXPECT_EQ(admin->copyRecord("REC2", id.constData(), sections, L"copy", copy.out()), unknownDevice);
}

TEST_F(AdminServant, LeavesABusyRecordAsItIs)
{
    const TQ_KORVE::IF_Control_var control = TQ_KORVE::IF_Control::_narrow(CORBA::Object_var(recorder->reference()));
    ASSERT_EQ(admin->setRecordDeletableFlag("REC1", id.constData(), true), 0u);
    const TQ_KORVE::IF_ReplaySession_var session =
        control->getReplaySessionById(id.constData(), TQ_KORVE_IT::IF_Korve_IT::_nil());
    EXPECT_FALSE(admin->deleteRecord("REC1", id.constData()));
    EXPECT_EQ(record()->recordStatus, TQ_KRV::rsREADY_FOR_REPLAY);
    control->setRecordIdle(id.constData());
    EXPECT_TRUE(admin->deleteRecord("REC1", id.constData()));
}

TEST_F(AdminServant, SetsTheTimeOfTheDevice)
{
    CORBA::ULongLong before = 0;
    CORBA::ULongLong after = 0;
    CORBA::Boolean synchronized = true;
    constexpr CORBA::ULongLong hourUs = 3600000000;
    ASSERT_EQ(admin->getDeviceTime("REC1", before, synchronized), 0u);
    EXPECT_EQ(admin->setDeviceTime("REC1", before + hourUs), 0u);
    EXPECT_EQ(admin->getDeviceTime("REC1", after, synchronized), 0u);
    EXPECT_GE(after, before + hourUs);
    EXPECT_FALSE(synchronized);
    EXPECT_EQ(admin->setDeviceTime("REC2", before), unknownDevice);
    EXPECT_EQ(admin->setDeviceTime("REC1", ~CORBA::ULongLong(0)), invalidValue);
}

TEST_F(AdminServant, HasASpectrumSent)
{
    FileSink sink;
    const auto ask = [&](const char *record, const char *host, CORBA::UShort port) {
        return admin->getOverviewSpectrumStreamed("REC1", record, 0, 200, 1, 16, TQ_KRV::wmKaiser, host, port);
    };
    EXPECT_EQ(ask(id.constData(), "127.0.0.1", sink.port()), 0u);
    EXPECT_EQ(sink.content().substr(0, 8), "KORVESPC");
    const RefusingPort refusing;
    EXPECT_EQ(ask(id.constData(), "127.0.0.1", refusing.port()), unreachable);
    EXPECT_EQ(ask("R0", "127.0.0.1", refusing.port()), unknownRecord);
    EXPECT_EQ(ask(id.constData(), "no address", 1), invalidValue);
}

TEST_F(AdminServant, HasTheSpectrumSentThatIsAskedFor)
{
    for (const auto window : {TQ_KRV::wmRectangle, TQ_KRV::wmHamming, TQ_KRV::wmHanning, TQ_KRV::wmKaiser, TQ_KRV::wmBlackman}) {
        FileSink sink;
        EXPECT_EQ(admin->getOverviewSpectrumStreamed("REC1", id.constData(), 40, 200, 3, 16, window, "127.0.0.1", sink.port()),
                  0u);
        apps::SpectrumReader reader;
        reader.add(QByteArray::fromStdString(sink.content()));
        const apps::SpectrumHead head{16, static_cast<quint32>(window), 9, 3, 40, 200, 8000, 0}; // of real samples
        EXPECT_EQ(reader.head(), head);
        while (reader.next())
            continue;
        EXPECT_TRUE(reader.isComplete());
    }
}

TEST_F(AdminServant, HasTheDetailsOfARecordLookedAt)
{
    std::vector<std::string> told; // by calls of this thread, since the servant is in this process
    service.reset();
    service.emplace(configuration, TestOrb::instance().insPoa(), cco,
                    installation::ManagerListeners{.record = [&](const QString &device, const QString &record) {
                        told.push_back(device.toStdString() + " " + record.toStdString());
                    }});
    ASSERT_TRUE(becomesAvailable("REC1"));
    EXPECT_EQ(admin->requestRecordDataDetail("REC1", id.constData()), 0u);
    EXPECT_EQ(admin->requestRecordDataDetail("REC1", "R0"), unknownRecord);
    EXPECT_EQ(admin->requestRecordDataDetail("REC2", id.constData()), unknownDevice);
    stopRecorder();
    EXPECT_EQ(admin->requestRecordDataDetail("REC1", id.constData()), unreachable);
    EXPECT_THAT(told, testing::ElementsAre("REC1 " + id.toStdString()));
    service.reset();
}

TEST_F(AdminServant, TellsARecorderThatIsGoneFromOneThatRefuses)
{
    stopRecorder();
    EXPECT_EQ(admin->setRecordComment("REC1", id.constData(), L"text"), unreachable);
    EXPECT_THROW(admin->addBookmarks("REC1", id.constData(), bookmarksAt({10})), CORBA::TRANSIENT);
    EXPECT_FALSE(admin->deleteRecord("REC1", id.constData()));
}
