#include "tests/installation/program/installationfixture.h"

#include "orbconnection/orbhandler.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/waiting.h"

#include <QFile>
#include <QProcess>
#include <QtTest/QTest>

using CorbaCommon::OrbHandler;

namespace
{

const QString program = QStringLiteral(INSTALLATION_PROGRAM);

void writeSettings(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("cannot write " + path.toStdString());
    file.write("[recorder]\ndevice=REC1\n[manager]\narchive=archive.example:8010\n");
}

} // namespace

std::unique_ptr<InstallationFixture::Shared> InstallationFixture::shared;

void InstallationFixture::SetUpTestSuite()
{
    shared = std::make_unique<Shared>();
    qputenv("KORVE_ADDRESS", address().toLatin1());
    qputenv("KORVE_CCO", address().toLatin1() + ":8003");
    writeSettings(filePath("host.ini"));
    shared->centralService = start("cco");
    shared->recorder = start("recorder");
    shared->manager = start("manager");
}

QString InstallationFixture::address()
{
    static const LoopbackLease lease;
    return lease.address();
}

void InstallationFixture::TearDownTestSuite()
{
    shared.reset();
}

std::unique_ptr<ServiceProcess> InstallationFixture::start(const char *role)
{
    return std::make_unique<ServiceProcess>(program, argumentsOf(role));
}

QStringList InstallationFixture::argumentsOf(const char *role)
{
    return {QStringLiteral("--role"),   QLatin1String(role),   QStringLiteral("--end-with-parent"),
            QStringLiteral("--config"), filePath("host.ini"), QStringLiteral("--state"),
            filePath(role)};
}

std::unique_ptr<ServiceProcess> &InstallationFixture::process(const char *role)
{
    const std::string name(role);
    return name == "cco" ? shared->centralService : name == "recorder" ? shared->recorder : shared->manager;
}

InstallationFixture::Run InstallationFixture::run(const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(patienceMs))
        throw std::runtime_error("the program does not end");
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

InstallationFixture::Run InstallationFixture::import(const QStringList &files)
{
    return run(QStringList{QStringLiteral("import"), QStringLiteral("REC1")} + files);
}

TQ_KRV::IF_KRV_c_KRV_ptr InstallationFixture::manager()
{
    OrbHandler &orb = OrbHandler::Instance();
    const char *const path = "CCO/LocalSystem/LocalSubSystem/CentralServices/KorveManager/IF_KRV_c_KRV";
    const CORBA::Object_var object = orb.ResolveInterfaceViaCCO(path, QString());
    return TQ_KRV::IF_KRV_c_KRV::_narrow(object);
}

bool InstallationFixture::managerKnowsTheDevice()
{
    return QTest::qWaitFor(
        [] {
            try {
                const TQ_KRV::IF_KRV_c_KRV_var found = manager();
                CORBA::ULong state = 0;
                if (!CORBA::is_nil(found))
                    CORBA::string_free(found->getDeviceInformation("REC1", state));
                return state == 1;
            } catch (const CORBA::Exception &) {
                return false;
            }
        },
        patienceMs);
}

QStringList InstallationFixture::recordIds()
{
    const TQ_KRV::IF_KRV_c_KRV_var found = manager();
    TQ_KRV::seqRECORD_DATA_var records = found->getAllRecords("REC1");
    QStringList ids;
    for (CORBA::ULong position = 0; position < records->length(); ++position)
        ids << QString::fromUtf8(records[position].recordID);
    return ids;
}
