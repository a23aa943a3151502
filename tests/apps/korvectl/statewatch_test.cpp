#include "tests/apps/korvectl/followclient.h"
#include "tests/apps/korvectl/recordfixture.h"
#include "tests/support/waiting.h"

#include "orbconnection/orbhandler.h"

#include <QTcpServer>
#include <QtTest/QTest>

#include <csignal>

namespace
{

constexpr char folder[] = "CCO/LocalSystem/LocalSubSystem/CentralServices/KorveManager/Callbacks/";

/// A watch of records' states, told by this program in place of the manager, and by the manager.
class StateWatch : public RecordFixture
{
protected:
    static QStringList watches()
    {
        const CCO::IF_CCO_c_var service = CorbaCommon::OrbHandler::Instance().centralService(std::chrono::seconds(5));
        const CCO::seqString_var names = service->ResolveValues(folder, CCO::rtInstallation);
        QStringList found;
        for (CORBA::ULong position = 0; position < names->length(); ++position)
            found << QString::fromUtf8(names.in()[position]);
        return found;
    }
    static TQ_KRV::IF_RecordStateChangeCallback_ptr watch(const QString &name)
    {
        const CORBA::Object_var object = CorbaCommon::OrbHandler::Instance().ResolveInterfaceViaCCO(
            (folder + name).toUtf8().constData(), QString());
        return TQ_KRV::IF_RecordStateChangeCallback::_narrow(object);
    }
    static void tell(const char *record, TQ_KRV::eRECORD_STATUS status)
    {
        const QStringList names = watches();
        ASSERT_EQ(names.size(), 1);
        const TQ_KRV::IF_RecordStateChangeCallback_var callback = watch(names.first());
        ASSERT_FALSE(CORBA::is_nil(callback));
        callback->NotifyStateChange("REC1", record, "a name", status);
    }
    static std::string word(const FollowClient &client, const char *key)
    {
        return client.lastEvent()[QLatin1String(key)].toString().toStdString();
    }
    static QStringList watching() { return {QStringLiteral("watch")}; }
};

TEST_F(StateWatch, TellsOfEachState)
{
    FollowClient client(watching(), words("--count 3"));
    ASSERT_TRUE(client.waitForEvent("watching")) << client.errors().toStdString();
    for (const auto &[status, text] : {std::pair(TQ_KRV::rsREADY_FOR_REPLAY, "READY_FOR_REPLAY"),
                                       std::pair(TQ_KRV::rsREPLAYING, "REPLAYING"), std::pair(TQ_KRV::rsIDLE, "IDLE")}) {
        tell("R-told", status);
        while (client.waitForEvent("state") && word(client, "record") != "R-told")
            continue; // the manager tells of others
        EXPECT_EQ(word(client, "status"), text);
        EXPECT_EQ(word(client, "device"), "REC1");
        EXPECT_EQ(word(client, "name"), "a name");
    }
    EXPECT_EQ(client.waitForEnd(), 0) << client.errors().toStdString();
}

TEST_F(StateWatch, HearsOfReplaysFromTheManager)
{
    FollowClient client(watching(), {});
    ASSERT_TRUE(client.waitForEvent("watching")) << client.errors().toStdString();
    QTcpServer receiver;
    ASSERT_TRUE(receiver.listen(QHostAddress(address())));
    const QString target = QStringLiteral("%1:%2").arg(address()).arg(receiver.serverPort());
    ASSERT_EQ(askFor("replay start REC1 RECORD --speed 0.01 --to", target).exitCode, 0);
    constexpr int tries = 100; // the manager finds new watches within a second
    for (int number = 0; number < tries && !client.hasEvent(); ++number) {
        EXPECT_EQ(askFor("replay pause REC1 RECORD").exitCode, 0);
        EXPECT_EQ(askFor("replay continue REC1 RECORD").exitCode, 0);
    }
    EXPECT_TRUE(client.waitForEvent("state"));
    EXPECT_EQ(word(client, "record"), recordId.toStdString());
    EXPECT_EQ(askFor("replay stop REC1 RECORD").exitCode, 0);
    while (word(client, "status") != "IDLE" && client.waitForEvent("state"))
        continue;
    EXPECT_EQ(word(client, "status"), "IDLE");
    EXPECT_EQ(client.end(SIGINT), 0);
}

TEST_F(StateWatch, TakesItsNameBackWhenItIsInterrupted)
{
    FollowClient client(watching(), {});
    ASSERT_TRUE(client.waitForEvent("watching")) << client.errors().toStdString();
    EXPECT_EQ(watches().size(), 1);
    EXPECT_EQ(client.end(SIGINT), 0);
    EXPECT_TRUE(QTest::qWaitFor([] { return watches().isEmpty(); }, patienceMs));
}

TEST_F(StateWatch, IsOfTheLocalSubsystemAlone)
{
    const Run run = ask(words("watch --subsystem Elsewhere"));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(isOneSentence(run.errors)) << run.errors.toStdString();
}

} // namespace
