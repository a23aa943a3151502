#include "orbconnection/vtconnectionobserver.h"

#include "orbconnection/corbaloc.h"
#include "orbconnection/mirrorwire.h"
#include "orbconnection/valuetree.hh"
#include "tests/appruntime/capturedtraces.h"
#include "tests/orbconnection/livetreeserver.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"
#include "valuetreelib/vtclientcenter.h"

#include <QSignalSpy>

#include <functional>
#include <stdexcept>
#include <utility>

using namespace values;

namespace
{
class Connection : public LiveTreeServer
{
protected:
    std::unique_ptr<VtConnectionObserver> observe(const char *clientPath) const
    {
        return std::make_unique<VtConnectionObserver>(QStringLiteral("/K/Device"), QLatin1String(clientPath),
                                                      address(), QStringLiteral("/ReregisterCorba"), timing());
    }
    ValueBase *value(const char *path) const { return Tree::Instance().findValue(QLatin1String(path)); }
    bool isHere(const char *path, const char *content) const
    {
        return comesTrue([&] { return here(path) == QLatin1String(content); });
    }

    std::unique_ptr<VtConnectionObserver> connection = observe("/C/Device");
    QSignalSpy connected{connection.get(), &VtConnectionObserver::si_connected};
    QSignalSpy disconnected{connection.get(), &VtConnectionObserver::si_disconnected};
    QSignalSpy terminating{connection.get(), &VtConnectionObserver::si_clientTerminating};
};

TEST_F(Connection, SaysSoFromTheEventLoopWhenTheSnapshotIsThere)
{
    EXPECT_FALSE(connection->isConnected());
    ASSERT_TRUE(comesTrue([&] { return connected.count() == 1; }));
    EXPECT_EQ(connected.first().first().toString(), QStringLiteral("/C/Device"));
    EXPECT_EQ(here("/C/Device/State"), QStringLiteral("idle"));
    EXPECT_EQ(connection->getBaseClientPath(), QStringLiteral("/C/Device"));
    EXPECT_EQ(connection->connData().ipAddress, lease.address());
}

TEST_F(Connection, LosesTheValuesBeforeItSaysSoAndGetsThemBack)
{
    ASSERT_TRUE(comesTrue([&] { return connection->isConnected(); }));
    TValueState seen = ValueStateValid;
    QObject::connect(connection.get(), &VtConnectionObserver::si_disconnected, connection.get(),
                     [&] { seen = value("/C/Device/State")->GetState(); });
    killServer();
    ASSERT_TRUE(comesTrue([&] { return disconnected.count() == 1; }));
    EXPECT_EQ(seen, ValueStateConnectionLost);
    startServer();
    ASSERT_TRUE(comesTrue([&] { return connected.count() == 2; }));
    EXPECT_EQ(value("/C/Device/State")->GetState(), ValueStateValid);
}

TEST_F(Connection, IsLostWhenTheServerStandsStill)
{
    ASSERT_TRUE(comesTrue([&] { return connection->isConnected(); }));
    server().suspend();
    EXPECT_TRUE(comesTrue([&] { return disconnected.count() == 1; }));
    server().resume();
    EXPECT_TRUE(comesTrue([&] { return connected.count() == 2; }));
}

TEST_F(Connection, IsLostWhenTheServersMainThreadStandsStill)
{
    ASSERT_TRUE(comesTrue([&] { return connection->isConnected(); }));
    server().tell("standstill");
    ASSERT_EQ(server().readLine(), QStringLiteral("stands"));
    ASSERT_TRUE(comesTrue([&] { return disconnected.count() == 1; }));
    EXPECT_EQ(value("/C/Device/State")->GetState(), ValueStateConnectionLost);
    server().tell("set /K/Device/State moves");
    ASSERT_TRUE(comesTrue([&] { return connected.count() == 2; }));
    EXPECT_TRUE(isHere("/C/Device/State", "moves"));
}

TEST_F(Connection, LastsWhileTheClientsMainThreadStandsStill)
{
    ASSERT_TRUE(comesTrue([&] { return connection->isConnected(); }));
    const QString text = CorbaCommon::corbaloc(lease.address(), 8004, "ValueTree");
    const CORBA::Object_var object = orb.orb()->string_to_object(text.toLatin1().constData());
    const VALUETREE::TreeServer_var tree = VALUETREE::TreeServer::_unchecked_narrow(object);
    const CORBA::ULongLong silent = tree->open("/K", mirror::protocolVersion);
    // Without an event of this thread's: a session that says nothing is ended meanwhile.
    EXPECT_THROW(
        for (;;) tree->resynchronise(silent), VALUETREE::SessionUnknown);
    server().tell("set /K/Device/State moves");
    EXPECT_TRUE(isHere("/C/Device/State", "moves"));
    EXPECT_EQ(disconnected.count(), 0);
}

TEST_F(Connection, WaitsForAServerThatComesLater)
{
    killServer();
    const CapturedTraces traces;
    const auto early = observe("/E/Device");
    ASSERT_TRUE(comesTrue([&] { return traces.contain("does not answer as a tree server: TRANSIENT"); }));
    EXPECT_FALSE(early->isConnected());
    startServer();
    EXPECT_TRUE(comesTrue([&] { return early->isConnected(); }));
}

TEST_F(Connection, ConnectsAgainWhenItIsAskedTo)
{
    ASSERT_TRUE(comesTrue([&] { return connection->isConnected(); }));
    auto *const wish = dynamic_cast<Value<bool> *>(value("/C/Device/ReregisterCorba"));
    ASSERT_TRUE(wish);
    for (int times : {1, 2}) {
        wish->SetValue(true, nullptr);
        EXPECT_FALSE(wish->GetValue());
        ASSERT_TRUE(comesTrue([&] { return disconnected.count() == times; }));
        ASSERT_TRUE(comesTrue([&] { return connected.count() == times + 1; }));
    }
    EXPECT_EQ(atServer("/K/Device/ReregisterCorba"), QStringLiteral("(absent)"));
}

TEST_F(Connection, TakesItsPathAwayOnALossWhenItIsToldTo)
{
    connection->setDeleteClientTicPath(true);
    ASSERT_TRUE(comesTrue([&] { return connection->isConnected(); }));
    killServer();
    ASSERT_TRUE(comesTrue([&] { return disconnected.count() == 1; }));
    EXPECT_FALSE(Tree::Instance().findNode(QStringLiteral("/C/Device")));
    startServer();
    ASSERT_TRUE(comesTrue([&] { return connected.count() == 2; }));
    EXPECT_EQ(here("/C/Device/State"), QStringLiteral("idle"));
    EXPECT_TRUE(value("/C/Device/ReregisterCorba"));
}

TEST_F(Connection, SaysThatItEnds)
{
    ASSERT_TRUE(comesTrue([&] { return connection->isConnected(); }));
    connection.reset();
    EXPECT_EQ(terminating.count(), 1);
    EXPECT_EQ(disconnected.count(), 0);
    EXPECT_EQ(value("/C/Device/State")->GetState(), ValueStateConnectionLost);
}

TEST_F(Connection, ServesItsPath)
{
    IVtClient *const client = connection->vtClient();
    EXPECT_EQ(VtClientCenter::Instance().GetVtClientForPath(QStringLiteral("/C/Device/D1")), client);
    ASSERT_TRUE(comesTrue([&] { return connection->isConnected(); }));
    client->setOptimized(value("/C/Device/State"), false);
    EXPECT_FALSE(value("/C/Device/State")->isOptimized());
    connection.reset();
    EXPECT_FALSE(VtClientCenter::Instance().GetVtClientForPath(QStringLiteral("/C/Device/D1")));
}

TEST_F(Connection, KeepsUpWithManyChanges)
{
    ASSERT_TRUE(comesTrue([&] { return connection->isConnected(); }));
    for (int part = 1; part <= 20; ++part) { // between two of which the server's main thread gives signs of life
        server().tell("many /K/Device/Many/" + QByteArray::number(part) + " 1000");
        server().tell("burst /K/Device/State 5000");
    }
    server().tell("set /K/Device/State last");
    EXPECT_TRUE(isHere("/C/Device/State", "last"));
    EXPECT_EQ(here("/C/Device/Many/20/1000"), QStringLiteral("1000"));
    EXPECT_EQ(disconnected.count(), 0);
}

TEST_F(Connection, GivesBackTheRoomOfWhatItHasApplied)
{
    MirrorTiming narrow = timing();
    narrow.queueBytes = 1000;
    const VtConnectionObserver other(QStringLiteral("/K/Device"), QStringLiteral("/O"), address(), QString(), narrow);
    for (int i = 1; i <= 20; ++i) {
        const QByteArray content = QByteArray::number(i);
        server().tell("set /K/Device/State " + content);
        ASSERT_TRUE(isHere("/O/State", content.constData())) << i;
    }
}

TEST_F(Connection, SendsTheRestOfMuchAlsoWhenNothingChangesAnyMore)
{
    MirrorTiming narrow = timing();
    narrow.windowBytes = 1000;
    narrow.batchBytes = 200;
    const VtConnectionObserver other(QStringLiteral("/K/Device"), QStringLiteral("/O"), address(), QString(), narrow);
    server().tell("many /K/Device/Many 500");
    ASSERT_TRUE(isHere("/O/Many/500", "500"));
    for (int i = 1; i <= 500; ++i)
        Tree::Instance().findValue(QStringLiteral("/O/Many/%1").arg(i))->SetStringValue(QStringLiteral("set"), nullptr);
    EXPECT_TRUE(comesTrue([&] { return atServer("/K/Device/Many/500") == QStringLiteral("set"); }));
}

TEST_F(Connection, LeavesTheValueAloneByWhichItCouldBeAskedToConnectAgain)
{
    ASSERT_TRUE(value("/C/Device/ReregisterCorba")->hasObservers());
    connection.reset();
    EXPECT_FALSE(value("/C/Device/ReregisterCorba")->hasObservers());
}

TEST_F(Connection, ToNowhereNeitherHangsNorConnects)
{
    const VtConnectionObserver nowhere(QStringLiteral("/K"), QStringLiteral("/N"), {QString(), QStringLiteral("a/b")},
                                       QString(), timing());
    ASSERT_TRUE(comesTrue([&] { return connection->isConnected(); }));
    EXPECT_FALSE(nowhere.isConnected());
}

TEST_F(Connection, ToSomethingElseAtThatPlaceSaysSoAndTriesAgain)
{
    const CapturedTraces traces;
    const LoopbackLease otherLease;
    const ServiceProcess other(QStringLiteral(TROUBLE_PROGRAM),
                               {otherLease.address(), QStringLiteral("8004"), QString(), QStringLiteral("ValueTree")});
    const VtConnectionObserver astray(QStringLiteral("/K"), QStringLiteral("/N"), {QString(), otherLease.address()},
                                      QString(), timing());
    const std::string text = "The tree server at " + otherLease.address().toStdString()
                             + ":8004 does not answer as a tree server: ";
    EXPECT_TRUE(comesTrue([&] { return traces.contain(text); }));
    EXPECT_FALSE(astray.isConnected());
}

/// Does something when it is told @p code, and only once.
class Once : public IObserver
{
public:
    Once(TChangeCode code, std::function<void()> action) : code(code), action(std::move(action)) {}
    void Update(Observable *, TChangeCode told) override
    {
        if (told == code && action)
            std::exchange(action, nullptr)();
    }
    const TChangeCode code;
    std::function<void()> action;
};

TEST_F(Connection, MayBeDeletedByWhoIsToldOfItsLoss)
{
    for (const TChangeCode code : {ChangeCodeState, ChangeCodeDeleted}) {
        connection = observe("/C/Device");
        Once deleter(code, [this] { connection.reset(); });
        startServer();
        server().tell("set /K/Device/Other 1");
        ASSERT_TRUE(isHere("/C/Device/Other", "1"));
        value("/C/Device/Other")->AddObserver(&deleter);
        killServer();
        EXPECT_TRUE(comesTrue([&] { return !connection; }));
        EXPECT_EQ(value("/C/Device/State")->GetState(), ValueStateConnectionLost);
        value("/C/Device/Other")->DeleteObserver(&deleter);
        Tree::Instance().removeNode(QStringLiteral("/C"));
    }
}

TEST_F(Connection, MayBeDeletedByWhoIsToldOfWhatItBrings)
{
    ASSERT_TRUE(comesTrue([&] { return connection->isConnected(); }));
    Once deleter(ChangeCodeChildAdded, [this] { connection.reset(); });
    Node *const device = Tree::Instance().findNode(QStringLiteral("/C/Device"));
    device->AddObserver(&deleter);
    server().tell("many /K/Device/Many 1000");
    EXPECT_TRUE(comesTrue([&] { return !connection; }));
    EXPECT_EQ(value("/C/Device/State")->GetState(), ValueStateConnectionLost);
    device->DeleteObserver(&deleter);
}

TEST_F(Connection, GoesOnWhenAnObserverThrows)
{
    ASSERT_TRUE(comesTrue([&] { return connection->isConnected(); }));
    Once thrower(ChangeCodeValue, [] { throw std::runtime_error("an observer's trouble"); });
    value("/C/Device/State")->AddObserver(&thrower);
    server().tell("burst /K/Device/State 10000");
    EXPECT_TRUE(isHere("/C/Device/State", "10000"));
    EXPECT_EQ(disconnected.count(), 0);
    value("/C/Device/State")->DeleteObserver(&thrower);
}

TEST_F(Connection, LooksUpAddresses)
{
    QString ip;
    EXPECT_TRUE(VtConnectionObserver::GetFirstIPAddressOfHostNameStatic(QStringLiteral("localhost"), ip, true));
    EXPECT_EQ(ip, QStringLiteral("127.0.0.1"));
}
} // namespace
