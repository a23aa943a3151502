#include "tests/faults/faultyinstallation.h"

#include <omniORB4/omniORB.h>

#include <QFile>

using testing::StrEq;

namespace
{

/// What a script does to a running installation.
class Effects : public FaultyInstallation
{
protected:
    /// The name of what @p call raises; empty when it raises nothing.
    static std::string raisedBy(const std::function<void()> &call)
    {
        try {
            call();
        } catch (const CORBA::Exception &exception) {
            return exception._name();
        }
        return {};
    }
    /// The letter that the system has for it, such as T for one that stands still.
    char stateOf(const char *role)
    {
        QFile file(QStringLiteral("/proc/%1/stat").arg(process(role).processId()));
        file.open(QIODevice::ReadOnly);
        return (file.readAll() + "(x) ?").split(')').at(1).at(1);
    }
    /// Waits, bounded, for a recorder that tells.
    std::size_t historyOf(const std::string &recordId)
    {
        TQ_KORVE::seqHistory_var entries = new TQ_KORVE::seqHistory;
        const auto ask = [&] {
            const TQ_KORVE::IF_Control_var control = recorder(); // until it is registered anew, the one that was killed
            entries = control->getHistory(recordId.c_str());
        };
        EXPECT_TRUE(comesTrue([&] { return raisedBy(ask).empty(); }));
        return entries->length();
    }
    void setComment(const std::string &recordId)
    {
        const TQ_KORVE::IF_Control_var control = recorder();
        control->setRecordComment(recordId.c_str(), TQ_KORVE::wideText());
    }
};

} // namespace

TEST_F(Effects, EndsTheProgramByALineThatIsNotUnderstood)
{
    EXPECT_EQ(refusalOf("at 5s kill cco\nat 5s kill archive\n"),
              QStringLiteral("korve-installation: :2: no role is called \"archive\""));
}

TEST_F(Effects, RaisesExceptionsOfTheOrbByName)
{
    start("on getWorkstationName pass once\non getWorkstationName raise COMM_FAILURE once\n"
          "on getWorkstationName raise TRANSIENT once\n"
          "on getWorkstationName raise NO_PERMISSION once\n");
    const TQ_KRV::IF_KRV_c_KRV_var main = manager();
    const auto ask = [&] { CORBA::string_free(main->getWorkstationName()); };
    EXPECT_EQ(raisedBy(ask), "");
    EXPECT_EQ(raisedBy(ask), "COMM_FAILURE");
    EXPECT_EQ(raisedBy(ask), "TRANSIENT");
    EXPECT_EQ(raisedBy(ask), "NO_PERMISSION");
    EXPECT_EQ(raisedBy(ask), "");
}

TEST_F(Effects, RaisesWhatIsDeclaredAndUnknownForTheRest)
{
    start("on mapDeviceIdToAddress raise exKRV 2 \"so it is\" once\n"
          "on mapDeviceIdToAddress raise exKorve 2 once\n");
    const TQ_KRV::IF_KRV_c_KRV_var main = manager();
    try {
        CORBA::string_free(main->mapDeviceIdToAddress("REC1"));
        FAIL();
    } catch (const TQ_KRV::IF_KRV_c_KRV::exKRV &refusal) {
        EXPECT_EQ(refusal.kind, TQ_KRV::IF_KRV_c_KRV::Invalid_RecordId);
        EXPECT_THAT(refusal.text.in(), StrEq("so it is"));
    }
    EXPECT_EQ(raisedBy([&] { CORBA::string_free(main->mapDeviceIdToAddress("REC1")); }), "UNKNOWN");
}

TEST_F(Effects, AnswersWithoutAskingTheServant)
{
    start("on setRecordComment answer 7000 once\non copyRecord answer 10003 once\n"
          "on getDeviceTime answer 502 once\non getRecord answer 500 once\non deleteRecord answer 1 once\n");
    const TQ_KRV::IF_KORVE_Admin_var remote = admin();
    EXPECT_EQ(remote->setRecordComment("none", "none", L"text"), 7000u);
    CORBA::String_var newId;
    EXPECT_EQ(remote->copyRecord("none", "none", TQ_KRV::seqCopySection(), L"name", newId.out()), 10003u);
    EXPECT_THAT(newId.in(), StrEq(""));
    CORBA::ULongLong time = 1;
    CORBA::Boolean isSynchronized = true;
    EXPECT_EQ(remote->getDeviceTime("none", time, isSynchronized), 502u);
    EXPECT_EQ(time, 0u);
    EXPECT_FALSE(isSynchronized);
    TQ_KRV::struRECORD_DATA_var record;
    EXPECT_EQ(remote->getRecord("none", "none", record.out()), 500u);
    EXPECT_THAT(record->recordID.in(), StrEq(""));
    EXPECT_TRUE(remote->deleteRecord("none", "none"));
    EXPECT_FALSE(remote->deleteRecord("none", "none"));
}

TEST_F(Effects, DelaysLongerThanACallerWaits)
{
    start("on getWorkstationName delay 10min once\n");
    const TQ_KRV::IF_KRV_c_KRV_var main = manager();
    omniORB::setClientCallTimeout(main, 300);
    EXPECT_EQ(raisedBy([&] { CORBA::string_free(main->getWorkstationName()); }), "TRANSIENT");
    omniORB::setClientCallTimeout(main, 30000);
    EXPECT_EQ(raisedBy([&] { CORBA::string_free(main->getWorkstationName()); }), "");
    EXPECT_EQ(process("manager").end(), 0); // a delay does not hold it
}

TEST_F(Effects, KillsBeforeTheEffect)
{
    start("on recorder addHistory kill before\n");
    const std::string id = importRecord();
    const TQ_KORVE::IF_Control_var control = recorder();
    EXPECT_EQ(raisedBy([&] { control->addHistory(id.c_str(), TQ_KORVE::wideText()); }), "COMM_FAILURE");
    startAgain("recorder");
    EXPECT_EQ(historyOf(id), 0u);
}

TEST_F(Effects, KillsAfterTheEffect)
{
    start("on recorder addHistory kill after\n");
    const std::string id = importRecord();
    const TQ_KORVE::IF_Control_var control = recorder();
    EXPECT_EQ(raisedBy([&] { control->addHistory(id.c_str(), TQ_KORVE::wideText()); }), "COMM_FAILURE");
    startAgain("recorder");
    EXPECT_EQ(historyOf(id), 1u);
}

TEST_F(Effects, KillsAtARandomMomentOfATime)
{
    start("on recorder addHistory kill within 2ms\n");
    const std::string id = importRecord();
    const TQ_KORVE::IF_Control_var control = recorder();
    const bool isAnswered = raisedBy([&] { control->addHistory(id.c_str(), TQ_KORVE::wideText()); }).empty();
    EXPECT_TRUE(comesTrue([&] { return !process("recorder").isRunning(); }));
    startAgain("recorder");
    const std::size_t entries = historyOf(id);
    EXPECT_LE(entries, 1u);
    EXPECT_TRUE(entries == 1 || !isAnswered);
}

TEST_F(Effects, KillsAtATime)
{
    start("at 3s kill manager\n"); // when it is ready for certain
    EXPECT_TRUE(comesTrue([&] { return !process("manager").isRunning(); }));
    EXPECT_TRUE(process("recorder").isRunning());
}

TEST_F(Effects, StopsAndContinues)
{
    start("at 3s stop manager for 5s\n");
    EXPECT_TRUE(comesTrue([&] { return stateOf("manager") == 'T'; }));
    EXPECT_NE(stateOf("recorder"), 'T');
    EXPECT_TRUE(comesTrue([&] { return stateOf("manager") != 'T'; }));
    const TQ_KRV::IF_KRV_c_KRV_var main = manager();
    EXPECT_EQ(raisedBy([&] { CORBA::string_free(main->getWorkstationName()); }), "");
}

TEST_F(Effects, FillsTheDiskOfTheRecorder)
{
    start("disk full on REC2\n");
    const std::string id = importRecord();
    setComment(id);
    process("recorder").end();
    setScript("disk full on REC1\n");
    startAgain("recorder");
    EXPECT_TRUE(comesTrue([&] { return raisedBy([&] { setComment(id); }) == "exKorve"; }));
    try {
        setComment(id);
        FAIL();
    } catch (const TQ_KORVE::exKorve &refusal) {
        EXPECT_EQ(refusal.kind, TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE);
        EXPECT_THAT(refusal.text.in(), testing::EndsWith("No space left on device"));
    }
}

TEST_F(Effects, TellsRolesOfOneProcessApart)
{
    startInOneProcess("on recorder setRecordComment raise exKorve 16 once\n"
                      "on manager setRecordComment answer 27 once\n");
    const std::string id = importRecord();
    const TQ_KRV::IF_KORVE_Admin_var remote = admin();
    EXPECT_EQ(remote->setRecordComment("REC1", id.c_str(), L"text"), 27u);
    EXPECT_EQ(remote->setRecordComment("REC1", id.c_str(), L"text"), 10016u);
    EXPECT_EQ(remote->setRecordComment("REC1", id.c_str(), L"text"), 0u);
}
