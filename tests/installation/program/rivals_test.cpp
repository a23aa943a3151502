#include "tests/installation/program/installationfixture.h"

#include "orbconnection/orbhandler.h"
#include "orbconnection/publishedendpoint.h"
#include "orbconnection/refusednames.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/waiting.h"

#include <QFile>
#include <QtTest/QTest>

using CorbaCommon::OrbHandler;

namespace
{

/// The services of a host of its own, at the central service of another.
class Rival
{
public:
    Rival(const QStringList &roles, const QString &address, const QString &centralService)
        : process(QStringLiteral(INSTALLATION_PROGRAM), arguments(roles, address, centralService))
    {
    }
    void kill() { process.kill(); }

private:
    QStringList arguments(const QStringList &roles, const QString &address, const QString &centralService) const
    {
        QFile file(folder.filePath(QStringLiteral("host.ini")));
        if (!file.open(QIODevice::WriteOnly))
            throw std::runtime_error("cannot write settings");
        file.write(QStringLiteral("[host]\naddress=%1\ncco=%2\n[recorder]\ndevice=REC1\n")
                       .arg(address, centralService)
                       .toUtf8());
        QStringList all{QStringLiteral("--end-with-parent"), QStringLiteral("--state"), folder.filePath("state"),
                        QStringLiteral("--config"), file.fileName()};
        for (const QString &role : roles)
            all << QStringLiteral("--role") << role;
        return all;
    }

    const QTemporaryDir folder;
    ServiceProcess process;
};

/// Hosts with the same names, beside the installation that this program's ORB belongs to.
class Rivals : public InstallationFixture
{
protected:
    Rivals()
    {
        OrbHandler::Instance(); // set up as for the other suites
        qunsetenv("KORVE_ADDRESS"); // it would beat the files
        qunsetenv("KORVE_CCO");
        centralService.emplace(QStringList{QStringLiteral("cco")}, center.address(), center.address());
    }

    std::unique_ptr<Rival> start(const char *role, const LoopbackLease &at) const
    {
        return std::make_unique<Rival>(QStringList{QLatin1String(role)}, at.address(), center.address());
    }
    /// Where what has the name is; empty when nobody has it.
    QString holderOf(const char *name) const
    {
        const CORBA::Object_var object = OrbHandler::Instance().ResolveInterfaceViaCCO(name, center.address());
        return CORBA::is_nil(object) ? QString() : CorbaCommon::publishedEndpoint(object).host;
    }
    QStringList valuesOf(const char *path) const
    {
        const QString reference = CorbaCommon::centralServiceReference(center.address());
        const CORBA::Object_var object = OrbHandler::Instance().orb()->string_to_object(reference.toLatin1().constData());
        const CCO::seqString_var found =
            CCO::IF_CCO_c_var(CCO::IF_CCO_c::_unchecked_narrow(object))->ResolveValues(path, CCO::rtInstallation);
        QStringList values;
        for (CORBA::ULong position = 0; position < found->length(); ++position)
            values << QString::fromUtf8(found.in()[position].in());
        return values;
    }
    bool isRefused(const QString &name, const QString &address) const
    {
        const QString beginning = name + QLatin1Char('/') + address + QLatin1Char(':');
        return !valuesOf(CorbaCommon::refusedNames).filter(beginning).isEmpty();
    }
    static bool comesTrue(const std::function<bool()> &condition) { return QTest::qWaitFor(condition, patienceMs); }

    const LoopbackLease center;
    const LoopbackLease east;
    const LoopbackLease west;
    std::optional<Rival> centralService;
};

} // namespace

TEST_F(Rivals, WithOneDeviceIdAreOneRecorderUntilTheFirstIsGone)
{
    const auto first = start("recorder", east);
    ASSERT_TRUE(comesTrue([&] { return holderOf("KorveRecorder/REC1/IF_Import") == east.address(); }));
    const auto second = start("recorder", west);
    EXPECT_TRUE(comesTrue([&] { return isRefused(QStringLiteral("KorveRecorder/REC1/IF_Control"), west.address()); }));
    EXPECT_EQ(holderOf("KorveRecorder/REC1/IF_Control"), east.address());
    EXPECT_EQ(holderOf("KorveRecorder/REC1/IF_Import"), east.address());
    first->kill();
    EXPECT_TRUE(comesTrue([&] { return holderOf("KorveRecorder/REC1/IF_Control") == west.address(); }));
    EXPECT_TRUE(comesTrue([&] { return holderOf("KorveRecorder/REC1/IF_Import") == west.address(); }));
    EXPECT_TRUE(valuesOf(CorbaCommon::refusedNames).isEmpty());
}

TEST_F(Rivals, AsManagersAreOneUntilTheFirstIsGone)
{
    const auto first = start("manager", east);
    ASSERT_TRUE(comesTrue([&] { return valuesOf("KorveManager/VTConnect").value(0) == east.address(); }));
    const auto second = start("manager", west);
    EXPECT_TRUE(comesTrue([&] { return isRefused(QStringLiteral("KorveManager/IF_KRV_c_KRV"), west.address()); }));
    EXPECT_EQ(holderOf("KorveManager/IF_KRV_c_KRV"), east.address());
    EXPECT_EQ(valuesOf("KorveManager/VTConnect").value(0), east.address());
    first->kill();
    EXPECT_TRUE(comesTrue([&] { return holderOf("KorveManager/IF_KRV_c_KRV") == west.address(); }));
    EXPECT_TRUE(comesTrue([&] { return valuesOf("KorveManager/VTConnect").value(0) == west.address(); }));
}

TEST_F(Rivals, DoNotLoseTheirManagerToARecorderThatIsRefused)
{
    const auto first = start("recorder", east);
    ASSERT_TRUE(comesTrue([&] { return holderOf("KorveRecorder/REC1/IF_Control") == east.address(); }));
    const Rival both({QStringLiteral("recorder"), QStringLiteral("manager")}, west.address(), center.address());
    EXPECT_TRUE(comesTrue([&] { return isRefused(QStringLiteral("KorveRecorder/REC1/IF_Control"), west.address()); }));
    EXPECT_TRUE(comesTrue([&] { return valuesOf("KorveManager/VTConnect").value(0) == west.address(); }));
}
