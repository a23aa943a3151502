#include "tests/installation/program/installationfixture.h"

#include "orbconnection/orbhandler.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/waiting.h"

#include <QFile>
#include <QtTest/QTest>

using CorbaCommon::OrbHandler;

namespace
{

/// A host with all services, in one process, and a peer.
class Host
{
public:
    Host(const QString &address, const char *subsystem, const QString &peer)
        : process(QStringLiteral(INSTALLATION_PROGRAM),
                  {QStringLiteral("--end-with-parent"), QStringLiteral("--state"), folder.filePath("state"),
                   QStringLiteral("--config"), settings(address, subsystem, peer)})
    {
    }

private:
    QString settings(const QString &address, const char *subsystem, const QString &peer) const
    {
        QFile file(folder.filePath(QStringLiteral("host.ini")));
        if (!file.open(QIODevice::WriteOnly))
            throw std::runtime_error("cannot write settings");
        file.write(QStringLiteral("[host]\naddress=%1\n[cco]\nsubsystem=%2\npeers=%3\n[recorder]\ndevice=REC-%2\n")
                       .arg(address, QLatin1String(subsystem), peer)
                       .toUtf8());
        return file.fileName();
    }

    const QTemporaryDir folder;
    const ServiceProcess process;
};

class TwoHosts : public testing::Test
{
protected:
    /// The devices of the manager of @p subsystem, as the central service of @p host finds it.
    static QStringList devicesOf(const char *subsystem, const QString &host)
    {
        const std::string path = std::string("CCO/LocalSystem/SubSystems/") + subsystem +
                                 "/CentralServices/KorveManager/IF_KRV_c_KRV";
        QStringList ids;
        try {
            const CORBA::Object_var object = OrbHandler::Instance().ResolveInterfaceViaCCO(path.c_str(), host);
            const TQ_KRV::IF_KRV_c_KRV_var manager = TQ_KRV::IF_KRV_c_KRV::_narrow(object);
            if (CORBA::is_nil(manager))
                return ids;
            const TQ_KRV::seqString_var devices = manager->getAllDevices();
            for (CORBA::ULong position = 0; position < devices->length(); ++position)
                ids << QString::fromUtf8(devices.in()[position].in());
        } catch (const CORBA::SystemException &) {
            // one of them is not there yet
        }
        return ids;
    }

    const LoopbackLease east;
    const LoopbackLease west;
};

} // namespace

TEST_F(TwoHosts, ReachEachOthersManagers)
{
    qunsetenv("KORVE_ADDRESS"); // it would beat the files
    qunsetenv("KORVE_CCO");
    const Host eastern(east.address(), "East", west.address());
    const Host western(west.address(), "West", east.address());
    EXPECT_TRUE(QTest::qWaitFor([&] { return devicesOf("West", east.address()) == QStringList("REC-West"); }, patienceMs));
    EXPECT_TRUE(QTest::qWaitFor([&] { return devicesOf("East", west.address()) == QStringList("REC-East"); }, patienceMs));
    EXPECT_EQ(devicesOf("East", east.address()), QStringList("REC-East"));
}
