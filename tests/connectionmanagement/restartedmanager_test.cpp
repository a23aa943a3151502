#include "tests/connectionmanagement/handlerfixture.h"
#include "tests/support/outage.h"

namespace
{
/// A handler whose manager is a process of its own, at the same address in each of its lives.
class RestartedManager : public HandlerFixture
{
protected:
    RestartedManager()
    {
        startManager();
        upAll();
    }

    void startManager()
    {
        process = std::make_unique<ServiceProcess>(QStringLiteral(MANAGER_PROGRAM), QStringList{neighbourAddress()});
        const QByteArray reference = process->readyWords().value(2).toLatin1();
        const CORBA::Object_var object = orb.orb()->string_to_object(reference.constData());
        managerReference = TQ_KRV::IF_KRV_c_KRV::_narrow(object);
        unregisterManager(); // the one of this process lives, and would keep the name
        registerManager();
    }
    unsigned long askForRecords() { return handler.getAllRecords(QStringLiteral("D1"), records); }

    std::unique_ptr<ServiceProcess> process;
    Handler handler{alpha, station, QString()};
    QVector<KORVE_XML::KORVE_RecordData> records;
};

TEST_F(RestartedManager, AnswersTheFirstCallAfterTheConnectionIsMadeAgain)
{
    ASSERT_EQ(askForRecords(), 0u);
    process->kill();
    downAll();
    startManager();
    upAll();
    ASSERT_TRUE(comesTrue([this] { return handler.IsConnected(); }));
    EXPECT_EQ(askForRecords(), 0u);
}

TEST_F(RestartedManager, ThatStandsStillIsNotWaitedForByTheConnection)
{
    const Outage outage(*process, std::chrono::seconds(8));
    handler.Shutdown();
    EXPECT_TRUE(handler.ReconnectToServer());
    handler.Shutdown();
    EXPECT_TRUE(handler.ReconnectToServer()); // also where the ORB has no connection to the manager any more
    EXPECT_TRUE(outage.lasts());
}

TEST_F(RestartedManager, FailsTheCallThatMeetsADeadConnectionAndIsNotAskedTwice)
{
    ASSERT_EQ(askForRecords(), 0u);
    process->kill();
    EXPECT_EQ(askForRecords(), 205u);
    EXPECT_EQ(askForRecords(), 201u); // nobody is there, and no connection left to lose
    EXPECT_TRUE(handler.IsConnected()); // until its tics fall
}
} // namespace
