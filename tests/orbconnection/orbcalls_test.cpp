#include "idl/cco.hh"
#include "orbconnection/orbhandler.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/serviceprocess.h"

#include <gtest/gtest.h>

using namespace CorbaCommon;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace
{
/// A client's ORB with short time-outs, and a service that gives trouble.
class OrbCall : public testing::Test
{
protected:
    static constexpr int port = 8100;
    static constexpr int largeBytes = 20'000'000;

    static OrbHandler &configuredOrb()
    {
        static const bool configured = configure();
        EXPECT_TRUE(configured);
        return OrbHandler::Instance();
    }
    static bool configure()
    {
        OrbSettings settings = OrbSettings::fromEnvironment();
        settings.callTimeout = 1500ms;
        settings.connectTimeout = 500ms;
        settings.centralService = QStringLiteral("127.0.0.1:1");
        return OrbHandler::configure(settings);
    }

    CCO::IF_CCO_c_NamingCorba_ptr troubleAt(const QString &address) const
    {
        const QString reference = QStringLiteral("corbaloc::1.2@%1:%2/Trouble").arg(address, QString::number(port));
        const CORBA::Object_var object = orb.orb()->string_to_object(reference.toLatin1().constData());
        return CCO::IF_CCO_c_NamingCorba::_unchecked_narrow(object);
    }

    OrbHandler &orb = configuredOrb();
    const LoopbackLease lease;
};

class TroubledOrbCall : public OrbCall
{
protected:
    ServiceProcess process{QStringLiteral(TROUBLE_PROGRAM), {lease.address(), QString::number(port)}};
    const CCO::IF_CCO_c_NamingCorba_var trouble = troubleAt(lease.address());
};

TEST_F(TroubledOrbCall, ThatTakesTooLongIsTransient)
{
    const auto begin = Clock::now();
    EXPECT_THROW(trouble->Resolve("60000", CCO::rtInstallation), CORBA::TRANSIENT);
    EXPECT_GE(Clock::now() - begin, 1400ms);
    EXPECT_LT(Clock::now() - begin, 10s);
}

TEST_F(TroubledOrbCall, MayTakeAsLongAsItsOwnLimitSays)
{
    const CCO::IF_CCO_c_NamingCorba_var patient = withCallLimit<CCO::IF_CCO_c_NamingCorba>(trouble, 20s);
    EXPECT_TRUE(CORBA::is_nil(patient->Resolve("2000", CCO::rtInstallation)));
    EXPECT_THROW(trouble->Resolve("5000", CCO::rtInstallation), CORBA::TRANSIENT);
}

TEST_F(TroubledOrbCall, ToAServiceThatStandsStillIsTransient)
{
    EXPECT_TRUE(CORBA::is_nil(trouble->Resolve("0", CCO::rtInstallation)));
    process.suspend();
    EXPECT_THROW(trouble->Resolve("0", CCO::rtInstallation), CORBA::TRANSIENT);
    process.resume();
}

TEST_F(TroubledOrbCall, MayHaveALargeAnswer)
{
    orb.setCallTimeout(60s);
    const CCO::seqString_var values =
        trouble->ResolveValues(std::to_string(largeBytes).c_str(), CCO::rtInstallation);
    orb.setCallTimeout(1500ms);
    ASSERT_EQ(values->length(), 1u);
    EXPECT_EQ(qstrlen(values.in()[0]), unsigned(largeBytes));
}

TEST_F(TroubledOrbCall, MayHaveALargeArgument)
{
    CCO::seqString values;
    values.length(1);
    values[0] = QByteArray(largeBytes, 'y').constData();
    orb.setCallTimeout(60s);
    EXPECT_NO_THROW(trouble->RegisterValues(std::to_string(largeBytes).c_str(), values, 0));
    orb.setCallTimeout(1500ms);
}

TEST_F(OrbCall, ToADeadPortFailsSoon)
{
    const CCO::IF_CCO_c_NamingCorba_var nobody = troubleAt(lease.address());
    const auto begin = Clock::now();
    EXPECT_THROW(nobody->Resolve("0", CCO::rtInstallation), CORBA::TRANSIENT);
    EXPECT_LT(Clock::now() - begin, 5s);
}

TEST_F(OrbCall, ToAnAddressThatStaysSilentFailsWithTheConnectTimeOut)
{
    // A listener whose queue is full drops further requests to connect, as a host that is switched off does.
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_port = htons(port);
    inet_pton(AF_INET, lease.address().toLatin1().constData(), &name.sin_addr);
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr *>(&name), sizeof name), 0);
    ASSERT_EQ(listen(listener, 0), 0);
    const int first = socket(AF_INET, SOCK_STREAM, 0);
    ASSERT_EQ(connect(first, reinterpret_cast<sockaddr *>(&name), sizeof name), 0);

    const CCO::IF_CCO_c_NamingCorba_var nobody = troubleAt(lease.address());
    const auto begin = Clock::now();
    EXPECT_THROW(nobody->Resolve("0", CCO::rtInstallation), CORBA::TRANSIENT);
    EXPECT_GE(Clock::now() - begin, 400ms);
    EXPECT_LT(Clock::now() - begin, 5s);
    close(first);
    close(listener);
}

TEST_F(OrbCall, ReferencesNameThePublishedAddress)
{
    // Another way to write the address that is bound: whoever listens on all of them takes the port from all tests.
    const QString published = QString::number(ntohl(inet_addr(lease.address().toLatin1().constData())));
    const ServiceProcess process(QStringLiteral(TROUBLE_PROGRAM), {lease.address(), QString::number(port), published});
    const CORBA::Object_var object =
        orb.orb()->string_to_object(process.readyWords().value(2).toLatin1().constData());
    const CCO::IF_CCO_c_NamingCorba_var trouble = CCO::IF_CCO_c_NamingCorba::_narrow(object);
    ASSERT_FALSE(CORBA::is_nil(trouble));
    // A reference is the address in clear text, as hexadecimal digits.
    EXPECT_TRUE(process.readyWords().value(2).contains(QString::fromLatin1(published.toLatin1().toHex())));
}

TEST_F(OrbCall, ServiceDoesNotStartAtATakenPort)
{
    const ServiceProcess first(QStringLiteral(TROUBLE_PROGRAM), {lease.address(), QString::number(port)});
    EXPECT_THROW(ServiceProcess(QStringLiteral(TROUBLE_PROGRAM), {lease.address(), QString::number(port)}),
                 std::runtime_error);
}

TEST_F(OrbCall, SettingsComeTooLateOnceTheOrbRuns)
{
    EXPECT_TRUE(orb.isRunning());
    EXPECT_FALSE(OrbHandler::configure(OrbSettings::fromEnvironment()));
    EXPECT_EQ(orb.settings().connectTimeout, 500ms);
}

TEST_F(OrbCall, WithoutACentralServiceEverythingIsEmpty)
{
    EXPECT_FALSE(orb.ConnectToCCO(2, 10));
    EXPECT_FALSE(orb.CCOIsAvailable());
    EXPECT_TRUE(CORBA::is_nil(orb.GetCCO()));
    EXPECT_THROW(orb.GetCCO()->GetSubSystems(), CORBA::INV_OBJREF);
    EXPECT_EQ(orb.GetSubSystemName(), QString());
    EXPECT_TRUE(orb.GetAllSubsystems().isEmpty());
    EXPECT_EQ(orb.GetSubsystemOfWorkstation(QStringLiteral("w")), QString());
    EXPECT_THROW(orb.ResolveInterfaceViaCCO("x", QString()), CORBA::TRANSIENT);
    EXPECT_THROW(orb.ResolveInterfaceViaCCO("x", QStringLiteral("no/host")), CORBA::INV_OBJREF);
}
} // namespace
