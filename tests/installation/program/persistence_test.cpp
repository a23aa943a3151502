#include "tests/installation/manager/bookmarksat.h"
#include "tests/installation/manager/wavfile.h"
#include "tests/installation/program/installationfixture.h"
#include "tests/support/waiting.h"

#include <QtTest/QTest>

namespace
{

constexpr CORBA::ULongLong hourUs = 3'600'000'000;

struct Outage {
    const char *name;
    bool isKilled; ///< or ends as it is asked to
};

/// A record and a clock, changed by way of the manager.
class Persistence : public InstallationFixture, public testing::WithParamInterface<Outage>
{
protected:
    Persistence()
    {
        EXPECT_TRUE(managerKnowsTheDevice());
        EXPECT_EQ(import({writeWavFile(shared->folder.path(), QStringLiteral("kept.wav"), 100)}).exitCode, 0);
        id = recordIds().last().toLatin1();
    }
    static TQ_KRV::IF_KORVE_Admin_var admin() { return TQ_KRV::IF_KRV_c_KRV_var(manager())->getKorveAdminInterface(); }
    TQ_KRV::struRECORD_DATA_var record() const
    {
        TQ_KRV::struRECORD_DATA_var found;
        EXPECT_EQ(admin()->getRecord("REC1", id, found.out()), 0u);
        return found;
    }
    static void startAgain(const char *role)
    {
        if (GetParam().isKilled)
            process(role)->kill();
        else
            EXPECT_EQ(process(role)->end(), 0);
        process(role) = start(role);
    }
    /// A manager that has just started may ask the recorder that has gone.
    bool answersAgain() const
    {
        TQ_KRV::struRECORD_DATA_var found;
        return managerKnowsTheDevice() &&
               QTest::qWaitFor([&] { return admin()->getRecord("REC1", id, found.out()) == 0; }, patienceMs);
    }
    static CORBA::ULongLong deviceTime()
    {
        CORBA::ULongLong time = 0;
        CORBA::Boolean isSynchronized = true;
        EXPECT_EQ(admin()->getDeviceTime("REC1", time, isSynchronized), 0u);
        EXPECT_FALSE(isSynchronized);
        return time;
    }

    QByteArray id;
};

} // namespace

TEST_P(Persistence, IsThatOfEverythingThatWasAcknowledged)
{
    const bool wasDeletable = record()->deletable;
    ASSERT_EQ(admin()->setRecordComment("REC1", id, L"comment"), 0u);
    ASSERT_EQ(admin()->setRecordDeletableFlag("REC1", id, !wasDeletable), 0u);
    ASSERT_EQ(admin()->addHistory("REC1", id, L"entry"), 0u);
    ASSERT_NO_THROW(admin()->addBookmarks("REC1", id, bookmarksAt({10, 20})));
    CORBA::ULongLong now = 0;
    CORBA::Boolean isSynchronized = false;
    ASSERT_EQ(admin()->getDeviceTime("REC1", now, isSynchronized), 0u);
    ASSERT_EQ(admin()->setDeviceTime("REC1", now + 10 * hourUs), 0u);
    startAgain("recorder");
    startAgain("manager");
    ASSERT_TRUE(answersAgain());
    const TQ_KRV::struRECORD_DATA_var kept = record();
    EXPECT_STREQ(kept->recordName, L"comment");
    EXPECT_EQ(kept->deletable, !wasDeletable);
    EXPECT_STREQ(kept->history[kept->history.length() - 1].historyEntry, L"entry");
    ASSERT_EQ(kept->bookmarks.length(), 2u);
    EXPECT_EQ(kept->bookmarks[1].timestamp, 20u);
    EXPECT_GE(deviceTime(), now + 10 * hourUs);
    EXPECT_LT(deviceTime(), now + 11 * hourUs);
    EXPECT_EQ(admin()->setDeviceTime("REC1", deviceTime() - 10 * hourUs), 0u);
}

INSTANTIATE_TEST_SUITE_P(Outages, Persistence, testing::Values(Outage{"Killed", true}, Outage{"Ended", false}),
                         [](const auto &info) { return std::string(info.param.name); });
