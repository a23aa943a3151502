#include "idl/cco.hh"
#include "orbconnection/orbhandler.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/outage.h"
#include "tests/support/rawserver.h"
#include "tests/support/serviceprocess.h"

#include <gtest/gtest.h>

#include <omniORB4/minorCode.h>

#include <atomic>

using namespace CorbaCommon;
using namespace std::literals;
using Clock = std::chrono::steady_clock;

namespace
{
/// What answers a request of GIOP 1.2: the object is at `place`, a reference without its byte order.
std::string sentOn(const std::string &request, const std::string &place)
{
    constexpr char locateRequest = 3, reply = 1, locateReply = 4;
    if (request.size() < 16)
        return {};
    const std::string id = request.substr(12, 4);
    if (request[7] == locateRequest)
        return "GIOP\1\2\1"s + locateReply + "\x08\0\0\0"s + id + "\1\0\0\0"s; // it is here
    const auto length = static_cast<char>(12 + place.size());
    return "GIOP\1\2\1"s + reply + length + "\0\0\0"s + id + "\3\0\0\0\0\0\0\0"s + place;
}

/// A client's ORB with short time-outs, and a service that gives trouble.
class OrbCall : public testing::Test
{
protected:
    static constexpr int port = 8100;
    static constexpr int largeBytes = 20'000'000;
    static constexpr auto callLimit = 1500ms;
    static constexpr auto connectLimit = 500ms;

    static OrbHandler &configuredOrb()
    {
        static const bool configured = configure();
        EXPECT_TRUE(configured);
        return OrbHandler::Instance();
    }
    static bool configure()
    {
        OrbSettings settings = OrbSettings::fromEnvironment();
        settings.callTimeout = callLimit;
        settings.connectTimeout = connectLimit;
        settings.centralService = QStringLiteral("127.0.0.1:1");
        return OrbHandler::configure(settings);
    }

    CCO::IF_CCO_c_NamingCorba_ptr troubleAt(const QString &address) const
    {
        const QString reference = QStringLiteral("corbaloc::1.2@%1:%2/Trouble").arg(address, QString::number(port));
        const CORBA::Object_var object = orb.orb()->string_to_object(reference.toLatin1().constData());
        return CCO::IF_CCO_c_NamingCorba::_unchecked_narrow(object);
    }

    void restoreLimits() const
    {
        orb.setCallTimeout(callLimit);
        orb.setConnectTimeout(connectLimit);
    }
    /// Why a call to that address is CORBA::TRANSIENT.
    CORBA::ULong failureAt(const QString &address) const
    {
        const CCO::IF_CCO_c_NamingCorba_var nobody = troubleAt(address);
        try {
            nobody->Resolve("0", CCO::rtInstallation);
        } catch (const CORBA::TRANSIENT &e) {
            return e.minor();
        }
        return 0;
    }

    OrbHandler &orb = configuredOrb();
    const LoopbackLease lease;
};

/// A listener whose queue is full: it drops further requests to connect, as a host that is switched off does, until
/// patience ends.
class SilentPort
{
public:
    SilentPort(const QString &address, int port)
    {
        sockaddr_in name{};
        name.sin_family = AF_INET;
        name.sin_port = htons(static_cast<std::uint16_t>(port));
        inet_pton(AF_INET, address.toLatin1().constData(), &name.sin_addr);
        EXPECT_EQ(bind(listener, reinterpret_cast<sockaddr *>(&name), sizeof name), 0);
        EXPECT_EQ(listen(listener, 0), 0);
        EXPECT_EQ(connect(first, reinterpret_cast<sockaddr *>(&name), sizeof name), 0);
    }
    ~SilentPort()
    {
        patience.end();
        close(first);
        close(listener);
    }

private:
    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    const int first = socket(AF_INET, SOCK_STREAM, 0);
    Patience patience{20s, [this] { shutdown(listener, SHUT_RDWR); }};
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
    const Outage outage(process);
    EXPECT_THROW(trouble->Resolve("0", CCO::rtInstallation), CORBA::TRANSIENT);
    EXPECT_TRUE(outage.lasts());
}

TEST_F(TroubledOrbCall, ThatHasToConnectTakesNoLongerThanOthers)
{
    orb.setCallTimeout(60s);
    orb.setConnectTimeout(60s);
    orb.setCallTimeout(300ms);
    {
        const Outage outage(process);
        for (int call = 0; call < 3; ++call) // each has to connect, since the one before gave up its connection
            EXPECT_THROW(trouble->Resolve("0", CCO::rtInstallation), CORBA::TRANSIENT);
        EXPECT_TRUE(outage.lasts());
    }
    restoreLimits();
}

TEST_F(TroubledOrbCall, MayTakeItsTimeToConnectAgainWhenItsLimitIsRaised)
{
    orb.setConnectTimeout(60s);
    orb.setCallTimeout(300ms);
    orb.setCallTimeout(60s);
    {
        const Outage outage(process, 3s);
        EXPECT_TRUE(CORBA::is_nil(trouble->Resolve("0", CCO::rtInstallation)));
        EXPECT_FALSE(outage.lasts());
    }
    restoreLimits();
}

TEST_F(TroubledOrbCall, MayHaveALargeAnswer)
{
    orb.setCallTimeout(60s);
    const CCO::seqString_var values =
        trouble->ResolveValues(std::to_string(largeBytes).c_str(), CCO::rtInstallation);
    restoreLimits();
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
    restoreLimits();
}

TEST_F(OrbCall, ToADeadPortFailsSoon)
{
    EXPECT_EQ(failureAt(lease.address()), omni::TRANSIENT_ConnectFailed); // and not after some limit
}

/// A call that its peer keeps busy.
class EndlessOrbCall : public OrbCall, public testing::WithParamInterface<std::chrono::milliseconds>
{
protected:
    void expectTimeOut(const RawServer::Answer &answer) const
    {
        std::atomic<int> answers = 0;
        const RawServer server(
            lease.address(), port, [&](const std::string &request) { return ++answers, answer(request); }, GetParam());
        EXPECT_EQ(failureAt(lease.address()), omni::TRANSIENT_CallTimedout);
        EXPECT_GT(answers, 2);
    }
};

TEST_P(EndlessOrbCall, ToAPeerThatEndsEachConnectionFailsWithItsLimit)
{
    expectTimeOut([](const std::string &) { return "GIOP\1\2\1\5\0\0\0\0"s; });
}

TEST_P(EndlessOrbCall, ToAPeerThatSendsItOnToItselfFailsWithItsLimit)
{
    const CORBA::Object_var nobody = troubleAt(lease.address());
    const CORBA::String_var reference = orb.orb()->object_to_string(nobody);
    const std::string place = QByteArray::fromHex(reference.in() + qstrlen("IOR:")).mid(4).toStdString();
    expectTimeOut([&](const std::string &request) { return sentOn(request, place); });
}

INSTANTIATE_TEST_SUITE_P(AtOnceAndLate, EndlessOrbCall, testing::Values(0ms, 300ms));

TEST_F(OrbCall, ToAnAddressThatStaysSilentFailsWithTheConnectTimeOut)
{
    SilentPort silent(lease.address(), port);
    orb.setCallTimeout(60s);
    const auto begin = Clock::now();
    EXPECT_EQ(failureAt(lease.address()), omni::TRANSIENT_CallTimedout); // and not since nobody listens any more
    EXPECT_GE(Clock::now() - begin, 400ms);
    restoreLimits();
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
    EXPECT_EQ(orb.settings().connectTimeout, connectLimit);
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
