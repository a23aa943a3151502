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

} // namespace

KorveConfiguration::KorveConfiguration(QObject *parent) : QObject(parent) {}

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
    file = {};
    try {
        readKeys(*CfgCenter::CreateCfg(QString(), CfgCenter::FileView, path));
    } catch (...) { // contract: whatever the reader throws ends here
        traceAt(TraceLevel::Normal, sourceName, [] { return QStringLiteral("Error reading Korve-Configuration"); });
    }
}

void KorveConfiguration::readKeys(const CfgFile &keys)
{
    file.isDebugging = keys.flag(QStringLiteral("DebugApplication"), file.isDebugging);
    file.setRecordIdle = keys.flag(QStringLiteral("SetRecordIdle"), file.setRecordIdle);
    file.passiveFtp = keys.flag(QStringLiteral("PassiveFTPMode"), file.passiveFtp);
    file.caption = keys.text(QStringLiteral("Caption"), file.caption);
    file.defaultArchiveDirectory = keys.text(QStringLiteral("DefaultArchive"), file.defaultArchiveDirectory)
                                       .replace(QLatin1Char('/'), QLatin1Char('\\'));
    readAddress(keys.text(QStringLiteral("Address"), QStringLiteral("TCP:127.0.0.1:8004")));
    file.helpFilePath = keys.text(QStringLiteral("HelpFilePath"), file.helpFilePath);
    traceAt(TraceLevel::Debug, sourceName,
            [&] { return QStringLiteral("Using Helpfile located at %1").arg(file.helpFilePath); });
}

// The address reads "TCP:host:port". A host without a port counts for nothing.
void KorveConfiguration::readAddress(const QString &address)
{
    const QString port = address.section(QLatin1Char(':'), 2, 2);
    const QString host = address.section(QLatin1Char(':'), 1, 1);
    if (port.isEmpty()) {
        traceAt(TraceLevel::Normal, sourceName, [] {
            return QStringLiteral(
                "KorveConfiguration::ReadConfiguration -> Incorrect syntax in port number of address");
        });
        return;
    }
    file.addressPort = std::atol(port.toLatin1().constData());
    if (!host.isEmpty()) {
        file.addressHost = host;
        return;
    }
    traceAt(TraceLevel::Normal, sourceName, [] {
        return QStringLiteral("KorveConfiguration::ReadConfiguration -> Incorrect syntax in host number of address");
    });
}

} // namespace KorveCommon
