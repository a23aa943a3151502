#include "connectionmanagement/managerlookup.h"

#include "connectionmanagement/abstractserverconnectiondata.h"
#include "connectionmanagement/remotecall.h"
#include "tests/appruntime/capturedtraces.h"
#include "tests/connectionmanagement/liveinstallation.h"


using namespace KorveCommon;
using namespace std::chrono_literals;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace
{
using Base = AbstractServerConnectionData;

const QString alphaPath = QStringLiteral("CCO/LocalSystem/SubSystems/Alpha/CentralServices/KorveManager/IF_KRV_c_KRV");

class Lookup : public LiveInstallation
{
protected:
    bool findSoon(const QString &subsystem = QStringLiteral("Alpha"))
    {
        return ManagerLookup(30ms).find(subsystem, data);
    }
    static std::string text(const char *before, const char *after)
    {
        return std::string("AbstractServerConnectionData::GetIPConnectionInformation(): ") + before +
               "Error resolving string with path: " + alphaPath.toStdString() + after;
    }

    VtConnectData data;
};

TEST_F(Lookup, FindsTheManagersHost)
{
    registerManager();
    data.port = 1;
    ASSERT_TRUE(Base::GetIPConnectionInformation(QStringLiteral("Alpha"), data));
    EXPECT_EQ(data.hostName, address());
    EXPECT_EQ(data.ipAddress, address());
    EXPECT_EQ(data.port, 8004);
    EXPECT_THAT(manager.calls, testing::ElementsAre("getWorkstationName"));
}

TEST_F(Lookup, KnowsTheLocalSubsystemByEachOfItsNames)
{
    registerManager();
    EXPECT_TRUE(findSoon(QString()));
    data = {};
    EXPECT_TRUE(findSoon(QStringLiteral("LocalSubSystem")));
}

TEST_F(Lookup, FindsTheManagerOfAnotherHostsSubsystem)
{
    startNeighbour();
    registerManager(neighbourAddress());
    manager.workstation = neighbourAddress().toStdString();
    ASSERT_TRUE(ManagerLookup(5s).find(QStringLiteral("West"), data));
    EXPECT_EQ(data.ipAddress, neighbourAddress());
}

TEST_F(Lookup, WritesHostNamesInLowerCase)
{
    registerManager();
    manager.workstation = "LocalHost";
    ASSERT_TRUE(findSoon());
    EXPECT_EQ(data.hostName, QStringLiteral("localhost"));
    EXPECT_EQ(data.ipAddress, QStringLiteral("127.0.0.1"));
}

TEST_F(Lookup, AsksNobodyWhenTheHostIsGiven)
{
    registerManager();
    data.hostName = QStringLiteral("127.1.2.3");
    data.port = 77;
    EXPECT_TRUE(findSoon());
    EXPECT_EQ(data.ipAddress, QStringLiteral("127.1.2.3"));
    EXPECT_EQ(data.port, 8004);
    data = {QStringLiteral("no.such.host.invalid"), {}, 0};
    EXPECT_FALSE(findSoon());
    EXPECT_THAT(manager.calls, IsEmpty());
}

TEST_F(Lookup, GivesUpAtOnceWithoutACentralService)
{
    stopService();
    CapturedTraces traces(32);
    EXPECT_FALSE(Base::GetIPConnectionInformation(QStringLiteral("Alpha"), data));
    EXPECT_THAT(traces.texts(), Not(Contains(HasSubstr("GetIPConnectionInformation")))); // not a single pass
    EXPECT_TRUE(data.hostName.isEmpty());
}

TEST_F(Lookup, FindsNothingWithoutAWordWhereNoManagerIs)
{
    CapturedTraces traces(32);
    EXPECT_FALSE(findSoon());
    EXPECT_THAT(traces.texts(), Not(Contains(HasSubstr("GetIPConnectionInformation"))));
}

TEST_F(Lookup, KeepsTryingWithoutPauseAndTracesEachPass)
{
    registerManager();
    manager.trouble = [] { throw CORBA::TRANSIENT(); };
    CapturedTraces traces(32);
    EXPECT_FALSE(findSoon());
    EXPECT_THAT(manager.calls, SizeIs(testing::Gt(1)));
    EXPECT_THAT(
        traces.texts(),
        Contains(text("Transient! ", ": No KorveManager registered!!")).Times(static_cast<int>(manager.calls.size())));
}

TEST_F(Lookup, MakesOnePassAtLeast)
{
    registerManager();
    EXPECT_TRUE(ManagerLookup(0ms).find(QString(), data));
}

TEST_F(Lookup, SucceedsInALaterPass)
{
    registerManager();
    manager.trouble = [this] {
        if (manager.calls.size() < 3)
            throw CORBA::TRANSIENT();
    };
    EXPECT_TRUE(ManagerLookup(10s).find(QString(), data));
    EXPECT_THAT(manager.calls, SizeIs(3));
}

TEST_F(Lookup, NamesOtherExceptionsOfTheOrb)
{
    registerManager();
    manager.trouble = [] { throw CORBA::NO_PERMISSION(); };
    CapturedTraces traces(32);
    EXPECT_FALSE(findSoon());
    EXPECT_EQ(traces.sourceOf(text("NO_PERMISSION! ", ": No KorveManager registered!!")),
              "connectionmanagement/abstractserverconnectiondata");
}

TEST_F(Lookup, TracesUnregisteredPathsAndUnknownExceptions)
{
    const auto textOf = [](RemoteOutcome::Kind kind) {
        return ManagerLookup::failureText({.kind = kind}, alphaPath).toStdString();
    };
    EXPECT_EQ(textOf(RemoteOutcome::Kind::NotRegistered), text("", ": No KorveManager registered!!"));
    EXPECT_EQ(textOf(RemoteOutcome::Kind::Unknown), text("", ""));
    EXPECT_EQ(textOf(RemoteOutcome::Kind::ManagerException), text("", ""));
    const RemoteOutcome gone{.kind = RemoteOutcome::Kind::NotExisting, .text = QStringLiteral("OBJECT_NOT_EXIST")};
    EXPECT_EQ(ManagerLookup::failureText(gone, alphaPath).toStdString(),
              text("OBJECT_NOT_EXIST! ", ": No KorveManager registered!!"));
}

TEST_F(Lookup, FailsForAWorkstationThatHasNoAddress)
{
    registerManager();
    manager.workstation = "no.such.host.invalid";
    EXPECT_FALSE(findSoon());
    EXPECT_EQ(data.hostName, QStringLiteral("no.such.host.invalid"));
}

TEST_F(Lookup, OfTheLocalSubsystemsName)
{
    EXPECT_EQ(Base::GetLocalSubsystemName(), QStringLiteral("Alpha"));
    stopService();
    EXPECT_EQ(Base::GetLocalSubsystemName(), QString());
}
} // namespace
