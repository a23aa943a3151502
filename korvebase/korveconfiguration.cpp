#include "korvebase/korveconfiguration.h"

#include "korvebase/valuetreepaths.h"

#include "appruntime/cfgcenter.h"
#include "coresupport/trace.h"
#include "valuetreelib/tree.h"

#include <cstdlib>

namespace KorveCommon
{

namespace
{

constexpr char sourceName[] = "korvebase/korveconfiguration";
constexpr long defaultPort = 8004;

QString defaultHost()
{
    return QStringLiteral("127.0.0.1");
}

} // namespace

KorveConfiguration::KorveConfiguration(QObject *parent)
    : QObject(parent), caption(QStringLiteral("KORVE Manager")), addressHost(defaultHost()), addressPort(defaultPort)
{
}

KorveConfiguration::~KorveConfiguration() = default;

void KorveConfiguration::Initialize(const QString &cfgPath)
{
    configurationPath = cfgPath;
    ReadConfiguration(cfgPath);
    values::Tree::Instance().configure(nullptr);
    traceAt(TraceLevel::Debug, sourceName, [&] { return QLatin1String("KorveConfiguration::Initialize") + cfgPath; });
}

void KorveConfiguration::SetCurrentSubSystem(const QString &subsystem)
{
    currentSubSystem = subsystem;
    Q_EMIT signalSubsystemChanged(subsystem);
}

QString KorveConfiguration::MakeRootPath(const QString &subsystem) const
{
    return valuePathPrefix + korve::path::subSystems + QLatin1Char('/') + subsystem;
}

QString KorveConfiguration::GetKorveRootPath() const
{
    return currentSubSystem.isEmpty() ? valuePathPrefix : MakeRootPath(currentSubSystem);
}

void KorveConfiguration::ReadConfiguration(const QString &path)
{
    try {
        readKeys(*CfgCenter::CreateCfg(QString(), CfgCenter::FileView, path));
    } catch (...) { // contract: whatever the reader throws ends here
        traceAt(TraceLevel::Normal, sourceName, [] { return QStringLiteral("Error reading Korve-Configuration"); });
    }
}

void KorveConfiguration::readKeys(const CfgFile &file)
{
    isDebugging = file.flag(QStringLiteral("DebugApplication"), isDebugging);
    setRecordIdle = file.flag(QStringLiteral("SetRecordIdle"), setRecordIdle);
    passiveFtp = file.flag(QStringLiteral("PassiveFTPMode"), passiveFtp);
    caption = file.text(QStringLiteral("Caption"), caption);
    defaultArchiveDirectory = file.text(QStringLiteral("DefaultArchive"), defaultArchiveDirectory);
    defaultArchiveDirectory.replace(QLatin1Char('/'), QLatin1Char('\\'));
    readAddress(file.text(QStringLiteral("Address"), QStringLiteral("TCP:127.0.0.1:8004")));
    helpFilePath = file.text(QStringLiteral("HelpFilePath"), helpFilePath);
    traceAt(TraceLevel::Debug, sourceName,
            [&] { return QStringLiteral("Using Helpfile located at %1").arg(helpFilePath); });
}

// The address reads "TCP:host:port". A host without a port counts for nothing.
void KorveConfiguration::readAddress(const QString &address)
{
    addressHost = defaultHost();
    addressPort = defaultPort;
    const QString port = address.section(QLatin1Char(':'), 2, 2);
    const QString host = address.section(QLatin1Char(':'), 1, 1);
    if (port.isEmpty()) {
        traceAt(TraceLevel::Normal, sourceName, [] {
            return QStringLiteral(
                "KorveConfiguration::ReadConfiguration -> Incorrect syntax in port number of address");
        });
        return;
    }
    addressPort = std::atol(port.toLatin1().constData());
    if (!host.isEmpty()) {
        addressHost = host;
        return;
    }
    traceAt(TraceLevel::Normal, sourceName, [] {
        return QStringLiteral("KorveConfiguration::ReadConfiguration -> Incorrect syntax in host number of address");
    });
}

} // namespace KorveCommon
