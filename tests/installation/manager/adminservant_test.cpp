#include "tests/installation/manager/managerfixture.h"

namespace
{

constexpr CORBA::ULong invalidValue = 10002;
constexpr CORBA::ULong unreachable = 10009;
constexpr CORBA::ULong unknownRecord = 10012;
constexpr CORBA::ULong notSupported = 10019;

TQ_KRV::seqBookmarks bookmarksAt(std::initializer_list<CORBA::ULongLong> timestamps)
{
    TQ_KRV::seqBookmarks bookmarks;
    for (const CORBA::ULongLong timestamp : timestamps) {
        bookmarks.length(bookmarks.length() + 1);
        bookmarks[bookmarks.length() - 1].timestamp = timestamp;
        bookmarks[bookmarks.length() - 1].bookmark = L"mark";
    }
    return bookmarks;
}

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
    EXPECT_EQ(admin->getRecord("REC2", id.constData(), found.out()), invalidValue);
    EXPECT_STREQ(found->recordID, "");
}

TEST_F(AdminServant, CarriesACommentUnitByUnit)
{
    const wchar_t comment[] = {L'\u00e4', L'\u4e2d', 0xd83d, 0xde00, 0}; // the last character takes two units
    EXPECT_EQ(admin->setRecordComment("REC1", id.constData(), comment), 0u);
    const TQ_KRV::struRECORD_DATA_var found = record();
    EXPECT_STREQ(found->recordName.in(), comment);
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
    EXPECT_THROW(admin->addBookmarks("REC1", id.constData(), bookmarksAt({10, 20})), CORBA::BAD_PARAM);
    EXPECT_EQ(record()->bookmarks.length(), 2u);
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
    EXPECT_EQ(admin->getDeviceTime("REC2", time, synchronized), invalidValue);
    EXPECT_EQ(time, 0u);
}

TEST_F(AdminServant, GivesTheRecordersOwnReasons)
{
    EXPECT_EQ(admin->setRecordComment("REC1", "R0", L"text"), unknownRecord);
    EXPECT_EQ(admin->addHistory("REC1", "R0", L"text"), unknownRecord);
}

TEST_F(AdminServant, SaysWhatIsNotSupportedOrMakesNoSense)
{
    CORBA::String_var copy;
    EXPECT_EQ(admin->requestRecordDataDetail("REC1", id.constData()), notSupported);
    EXPECT_EQ(admin->copyRecord("REC1", id.constData(), {}, L"copy", copy.out()), 10027u);
    EXPECT_STREQ(copy, "");
    EXPECT_EQ(
        admin->getOverviewSpectrumStreamed("REC1", id.constData(), 0, 1, 1, 16, TQ_KRV::wmKaiser, "no address", 1),
        invalidValue);
}

TEST_F(AdminServant, TellsARecorderThatIsGoneFromOneThatRefuses)
{
    stopRecorder();
    EXPECT_EQ(admin->setRecordComment("REC1", id.constData(), L"text"), unreachable);
    EXPECT_THROW(admin->addBookmarks("REC1", id.constData(), bookmarksAt({10})), CORBA::TRANSIENT);
    EXPECT_FALSE(admin->deleteRecord("REC1", id.constData()));
}
