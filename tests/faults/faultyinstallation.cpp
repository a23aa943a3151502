#include "tests/faults/faultyinstallation.h"

#include "orbconnection/orbhandler.h"
#include "tests/installation/manager/wavfile.h"
#include "tests/support/waiting.h"

#include <QFile>
#include <QProcess>
#include <QtTest/QTest>

#include <stdexcept>

using CorbaCommon::OrbHandler;

namespace
{

const QString program = QStringLiteral(INSTALLATION_PROGRAM);

void configureOrb(std::chrono::milliseconds callLimit)
{
    CorbaCommon::OrbSettings settings = CorbaCommon::OrbSettings::fromEnvironment();
    settings.callTimeout = callLimit;
    OrbHandler::configure(settings);
}

} // namespace

FaultyInstallation::FaultyInstallation()
{
    static const bool isConfigured = (configureOrb(callLimit), true);
    Q_UNUSED(isConfigured)
    qputenv("KORVE_ADDRESS", address().toLatin1());
    qputenv("KORVE_CCO", address().toLatin1() + ":8003");
    writeFile("host.ini", "[recorder]\ndevice=REC1\n");
}

void FaultyInstallation::writeFile(const char *name, const QByteArray &text)
{
    QFile file(folder.filePath(QLatin1String(name)));
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("cannot write " + file.fileName().toStdString());
    file.write(text);
}

void FaultyInstallation::startRoles(const QByteArray &script, const std::vector<const char *> &names)
{
    setScript(script);
    for (const char *name : names)
        processes[name] = launched(name);
}

QStringList FaultyInstallation::argumentsOf(const std::string &role) const
{
    QStringList arguments{QStringLiteral("--end-with-parent"), QStringLiteral("--config"),
                          folder.filePath(QStringLiteral("host.ini")), QStringLiteral("--state"),
                          folder.filePath(QString::fromStdString(role)), QStringLiteral("--faults"),
                          folder.filePath(QStringLiteral("script.faults"))};
    if (role != "all")
        arguments << QStringLiteral("--role") << QString::fromStdString(role);
    return arguments;
}

std::unique_ptr<ServiceProcess> FaultyInstallation::launched(const std::string &role)
{
    auto process = std::make_unique<ServiceProcess>(program, argumentsOf(role));
    while (role == "all" && process->readLine().section(u' ', 1, 1) != QLatin1String("manager")) {
    }
    return process;
}

QString FaultyInstallation::refusalOf(const QByteArray &script)
{
    setScript(script);
    QProcess process;
    process.start(program, argumentsOf("all"));
    const bool hasEnded = process.waitForFinished(patienceMs) && process.exitCode() == 1;
    const QString path = folder.filePath(QStringLiteral("script.faults"));
    return hasEnded ? QString::fromUtf8(process.readAllStandardError()).trimmed().remove(path) : QString();
}

CORBA::Object_ptr FaultyInstallation::registered(const char *name)
{
    const std::string path = std::string("CCO/LocalSystem/LocalSubSystem/CentralServices/") + name;
    CORBA::Object_var object;
    comesTrue([&] {
        try {
            object = OrbHandler::Instance().ResolveInterfaceViaCCO(path.c_str(), address());
        } catch (const CORBA::Exception &) { // not yet
        }
        return !CORBA::is_nil(object);
    });
    return object._retn();
}

TQ_KRV::IF_KRV_c_KRV_ptr FaultyInstallation::manager()
{
    const CORBA::Object_var object = registered("KorveManager/IF_KRV_c_KRV");
    return TQ_KRV::IF_KRV_c_KRV::_narrow(object);
}

TQ_KRV::IF_KORVE_Admin_ptr FaultyInstallation::admin()
{
    const TQ_KRV::IF_KRV_c_KRV_var main = manager();
    return main->getKorveAdminInterface();
}

TQ_KORVE::IF_Control_ptr FaultyInstallation::recorder()
{
    const CORBA::Object_var object = registered("KorveRecorder/REC1/IF_Control");
    return TQ_KORVE::IF_Control::_narrow(object);
}

std::string FaultyInstallation::importRecord()
{
    QProcess import;
    import.start(program, {QStringLiteral("import"), QStringLiteral("REC1"),
                           writeWavFile(folder.path(), QStringLiteral("a.wav"), 1000)});
    if (!import.waitForFinished(patienceMs) || import.exitCode() != 0)
        throw std::runtime_error("no record: " + import.readAllStandardError().toStdString());
    const TQ_KRV::IF_KRV_c_KRV_var main = manager();
    const bool isKnown = comesTrue([&] {
        const TQ_KRV::seqString_var devices = main->getAllDevices();
        CORBA::ULong state = 0;
        if (devices->length() == 1)
            CORBA::string_free(main->getDeviceInformation("REC1", state));
        return state == 1;
    });
    EXPECT_TRUE(isKnown);
    return QString::fromUtf8(import.readAllStandardOutput()).trimmed().section(u' ', -1).toStdString();
}

bool FaultyInstallation::comesTrue(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, patienceMs);
}
