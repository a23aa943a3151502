#include "installation/manager/bookmarklist.h"
#include "tests/installation/manager/bookmarksat.h"
#include "tests/installation/manager/fakerecorder.h"
#include "tests/installation/manager/managerfixture.h"
#include "tests/installation/manager/raisedkind.h"
#include "tests/installation/manager/servedobject.h"

#include <atomic>

namespace
{

constexpr CORBA::ULong unreachable = 10009;

/// A recorder that fails, perhaps after it has done what it was asked.
class FailingRecorder : public FakeRecorder
{
public:
    static constexpr CORBA::ULongLong goodTime = 77;  ///< a bookmark there can be added
    static constexpr CORBA::ULongLong takenTime = 78; ///< there is a bookmark already
    static constexpr CORBA::ULongLong laterTime = 79; ///< here, too

    void failAs(CORBA::CompletionStatus completion) { completed = completion; }

    void setRecordComment(Text, const TQ_KORVE::wideText &) override { fail(); }
    void addHistory(Text, const TQ_KORVE::wideText &) override { fail(); }
    void removeHistoryEntry(Text, CORBA::ULongLong) override { fail(); }
    void setDeletableFlagOfRecord(Text) override { fail(); }
    CORBA::Boolean removeRecord(Text) override { fail(); }
    char *copyRecord(Text, const TQ_KORVE::seqFILE_PART &, const TQ_KORVE::wideText &) override { fail(); }
    CORBA::ULongLong setSystemTime(CORBA::ULongLong) override { fail(); }
    void addBookmark(Text, CORBA::ULongLong timestampUs, const TQ_KORVE::wideText &) override
    {
        if (timestampUs == takenTime || timestampUs == laterTime)
            throw TQ_KORVE::exKorve(TQ_KORVE::ekBOOKMARK_ALREADY_EXISTS, std::to_string(timestampUs).c_str());
        if (timestampUs != goodTime)
            fail();
    }
    void removeBookmark(Text, CORBA::ULongLong) override { fail(); }
    CORBA::Boolean isSynchronizedByNTP() override { fail(); }

private:
    [[noreturn]] void fail() const { throw CORBA::TRANSIENT(0, completed); }

    std::atomic<CORBA::CompletionStatus> completed = CORBA::COMPLETED_MAYBE; // set by the test, read by the ORB
};

/// Everything that changes something, at a recorder that fails.
class FailingChanges : public ManagerFixture
{
protected:
    using Change = std::function<CORBA::ULong()>;

    std::map<std::string, Change> changes()
    {
        return {{"comment", [this] { return admin->setRecordComment("FAILING", "R1", L"text"); }},
                {"history", [this] { return admin->addHistory("FAILING", "R1", L"text"); }},
                {"no history", [this] { return admin->removeHistoryEntry("FAILING", "R1", 1); }},
                {"flag", [this] { return admin->setRecordDeletableFlag("FAILING", "R1", true); }},
                {"time", [this] { return admin->setDeviceTime("FAILING", 1); }},
                {"copy", [this] {
                     CORBA::String_var copy;
                     return admin->copyRecord("FAILING", "R1", {}, L"copy", copy.out());
                 }}};
    }
    void serve(CORBA::CompletionStatus completion)
    {
        startManager();
        failing.emplace(cco, "KorveRecorder/FAILING/IF_Control");
        (*failing)->failAs(completion);
        ASSERT_TRUE(becomesAvailable("FAILING"));
    }
    ~FailingChanges() override { service.reset(); }
    void addBookmarks(std::initializer_list<CORBA::ULongLong> times)
    {
        admin->addBookmarks("FAILING", "R1", bookmarksAt(times));
    }
    void deleteBookmark() { admin->deleteBookmarks("FAILING", "R1", bookmarksAt({10})); }

    std::optional<ServedObject<FailingRecorder>> failing;
};

} // namespace

TEST_F(FailingChanges, AreUnknownWhenTheyMayHaveBeenDone)
{
    using Failure = CORBA::COMM_FAILURE;
    serve(CORBA::COMPLETED_MAYBE);
    for (const auto &[name, change] : changes())
        EXPECT_EQ(completionBy<Failure>(change), CORBA::COMPLETED_MAYBE) << name;
    EXPECT_EQ(completionBy<Failure>([&] { admin->deleteRecord("FAILING", "R1"); }), CORBA::COMPLETED_MAYBE);
    EXPECT_EQ(completionBy<Failure>([&] { addBookmarks({10}); }), CORBA::COMPLETED_MAYBE);
    EXPECT_EQ(completionBy<Failure>([&] { deleteBookmark(); }), CORBA::COMPLETED_MAYBE);
}

TEST_F(FailingChanges, HaveFailedWhenNothingWasDone)
{
    using Failure = CORBA::TRANSIENT;
    serve(CORBA::COMPLETED_NO);
    for (const auto &[name, change] : changes())
        EXPECT_EQ(change(), unreachable) << name;
    EXPECT_FALSE(admin->deleteRecord("FAILING", "R1"));
    EXPECT_EQ(completionBy<Failure>([&] { addBookmarks({10}); }), CORBA::COMPLETED_NO);
    EXPECT_EQ(completionBy<Failure>([&] { deleteBookmark(); }), CORBA::COMPLETED_NO);
}

TEST_F(FailingChanges, AreToldFromQuestions)
{
    serve(CORBA::COMPLETED_MAYBE);
    CORBA::ULongLong time = 0;
    CORBA::Boolean synchronized = false;
    EXPECT_EQ(admin->getDeviceTime("FAILING", time, synchronized), unreachable);
}

TEST_F(FailingChanges, OfBookmarksAreUnknownBehindOneThatWasTaken)
{
    serve(CORBA::COMPLETED_NO);
    const auto behindTaken = [&] { addBookmarks({FailingRecorder::goodTime, 10}); };
    EXPECT_EQ(completionBy<CORBA::COMM_FAILURE>(behindTaken), CORBA::COMPLETED_MAYBE);
    const auto behindRefused = [&] { addBookmarks({FailingRecorder::takenTime, 10}); };
    EXPECT_EQ(completionBy<CORBA::TRANSIENT>(behindRefused), CORBA::COMPLETED_NO);
}

TEST_F(FailingChanges, OfBookmarksAreToldByTheFirstRefusal)
{
    serve(CORBA::COMPLETED_NO);
    const CORBA::Object_var object = failing->reference();
    const TQ_KORVE::IF_Control_var recorder = TQ_KORVE::IF_Control::_narrow(object);
    const auto bookmarks = bookmarksAt({FailingRecorder::takenTime, FailingRecorder::laterTime});
    try {
        installation::addBookmarksAt(recorder, "R1", bookmarks, std::chrono::seconds(10));
        ADD_FAILURE() << "both are refused";
    } catch (const TQ_KORVE::exKorve &refusal) {
        EXPECT_STREQ(refusal.text.in(), "78");
    }
}
