#include "tests/apps/korvectl/followclient.h"

#include "orbconnection/vtconnectionobserver.h"
#include "tests/installation/manager/wavfile.h"
#include "tests/installation/program/installationfixture.h"
#include "tests/support/waiting.h"
#include "valuetreelib/value.h"
#include "valuetreelib/valueptr.h"

#include <QtTest/QTest>

#include <csignal>
#include <functional>

namespace
{

/// A client that follows the records of a host whose manager comes and goes.
class Following : public InstallationFixture
{
protected:
    static void SetUpTestSuite()
    {
        InstallationFixture::SetUpTestSuite();
        ASSERT_TRUE(managerKnowsTheDevice());
        importWav("first.wav");
    }
    static void importWav(const char *name)
    {
        const Run done = import({writeWavFile(shared->folder.path(), QLatin1String(name), 8000)});
        ASSERT_EQ(done.exitCode, 0) << done.errors.toStdString();
    }
    /// The names of the records in the next listing that @p isWanted; none when there is no such one for long.
    static QStringList listing(FollowClient &client, const std::function<bool(const QStringList &)> &isWanted)
    {
        QStringList names;
        while (client.waitForAnyEvent()) {
            const QString kind = client.lastEvent()[QStringLiteral("event")].toString();
            if (kind == QLatin1String("record"))
                names << client.lastEvent()[QStringLiteral("name")].toString();
            else if (kind == QLatin1String("listed") && isWanted(names))
                return names;
            else if (kind != QLatin1String("device"))
                names.clear();
        }
        return {};
    }
    static QStringList listingWith(FollowClient &client, const QString &name)
    {
        return listing(client, [&](const QStringList &names) { return names.contains(name); });
    }
    static VtConnectData managersTree()
    {
        VtConnectData where;
        where.ipAddress = address();
        return where;
    }
    /// A manager that has come back may list a device before it has found it.
    static bool listsAgain(FollowClient &client, const QStringList &names)
    {
        bool hasListed = false;
        listing(client, [&](const QStringList &listed) { return hasListed = listed == names; });
        return hasListed;
    }
};

TEST_F(Following, TellsOfLossAndReturnAndListsAgain)
{
    FollowClient client({});
    ASSERT_TRUE(client.waitForEvent("connected"));
    EXPECT_FALSE(client.lastEvent().contains(QStringLiteral("awayMs")));
    const QStringList before = listingWith(client, QStringLiteral("first"));
    ASSERT_FALSE(before.isEmpty());

    shared->manager->kill();
    ASSERT_TRUE(client.waitForEvent("lost"));
    EXPECT_EQ(client.lastEvent()[QStringLiteral("subsystem")].toString(), QLatin1String("Main"));

    shared->manager = start("manager");
    ASSERT_TRUE(client.waitForEvent("connected"));
    EXPECT_GT(client.lastEvent()[QStringLiteral("awayMs")].toDouble(), 0);
    EXPECT_TRUE(listsAgain(client, before));
}

TEST_F(Following, FollowsThroughSeveralLosses)
{
    FollowClient client({QStringLiteral("REC1")});
    const QStringList before = listingWith(client, QStringLiteral("first"));
    ASSERT_FALSE(before.isEmpty());
    for (int loss = 0; loss < 3; ++loss) {
        shared->manager->kill();
        ASSERT_TRUE(client.waitForEvent("lost")) << loss;
        shared->manager = start("manager");
        ASSERT_TRUE(client.waitForEvent("connected")) << loss;
        ASSERT_TRUE(listsAgain(client, before)) << loss;
    }
}

TEST_F(Following, ListsAgainWhenThereIsANewRecord)
{
    FollowClient client({});
    ASSERT_FALSE(listingWith(client, QStringLiteral("first")).contains(QStringLiteral("second")));
    importWav("second.wav");
    EXPECT_FALSE(listingWith(client, QStringLiteral("second")).isEmpty());
}

TEST_F(Following, PrintsNoListingThatIsLikeTheOneBefore)
{
    FollowClient client({QStringLiteral("-vv")});
    ASSERT_FALSE(listingWith(client, QStringLiteral("first")).isEmpty());
    const QString devices = QStringLiteral("/KORVE/Device");
    const VtConnectionObserver mirror(devices, devices, managersTree(), QString());
    values::ValuePtr<values::Value<bool>> available;
    const QString path = devices + QLatin1String("/REC1/KorveAvailable");
    ASSERT_TRUE(QTest::qWaitFor([&] { return available.GetFromTree(path); }, patienceMs));
    available->HasChanged(ChangeCodeValue, nullptr); // all clients are told, and it is as it was
    EXPECT_TRUE(client.waitForTrace("nothing that is shown"));
    EXPECT_FALSE(client.hasEvent());
}

TEST_F(Following, ListsAgainWhenADeviceGoesAndComesBack)
{
    FollowClient client({});
    const QStringList before = listingWith(client, QStringLiteral("first"));
    ASSERT_FALSE(before.isEmpty());
    shared->recorder->kill();
    ASSERT_TRUE(client.waitForEvent("device"));
    EXPECT_FALSE(client.lastEvent()[QStringLiteral("available")].toBool());
    EXPECT_TRUE(listsAgain(client, {}));
    shared->recorder = start("recorder");
    EXPECT_TRUE(listsAgain(client, before));
}

TEST_F(Following, EndsWellWhenInterrupted)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        FollowClient client({});
        ASSERT_TRUE(client.waitForEvent("listed"));
        EXPECT_EQ(client.end(signal), 0);
    }
}

TEST_F(Following, EndsWellWhileTheManagerIsLost)
{
    FollowClient client({});
    ASSERT_TRUE(client.waitForEvent("listed"));
    shared->manager->kill();
    ASSERT_TRUE(client.waitForEvent("lost"));
    EXPECT_EQ(client.end(SIGTERM), 0);
    shared->manager = start("manager");
    ASSERT_TRUE(managerKnowsTheDevice());
}

TEST_F(Following, EndsWhenThereIsNoSuchDevice)
{
    FollowClient client({QStringLiteral("REC9")});
    EXPECT_EQ(client.waitForEnd(), 3);
    EXPECT_TRUE(client.errors().contains(QLatin1String("REC9"))) << client.errors().toStdString();
}

TEST_F(Following, NeedsAManagerToBeginWith)
{
    shared->manager->kill();
    FollowClient client({QStringLiteral("--timeout"), QStringLiteral("1")});
    EXPECT_EQ(client.waitForEnd(), 2);
    shared->manager = start("manager");
    ASSERT_TRUE(managerKnowsTheDevice());
}

} // namespace
