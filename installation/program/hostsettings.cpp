#include "installation/program/hostsettings.h"

#include "installation/recorder/deviceid.h"

#include "appruntime/cfgcenter.h"
#include "orbconnection/vtserver.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace installation
{

namespace
{

struct HostAndPort {
    QString host;
    std::uint16_t port;
};

bool isHost(const QString &text)
{
    // A single colon would begin a port.
    return text.count(u':') != 1 && !CorbaCommon::centralServiceReference(text).isEmpty();
}

/// "HOST:PORT", or "HOST" when there is a usual port.
std::optional<HostAndPort> hostAndPort(const QString &text, std::uint16_t usualPort)
{
    const int colon = text.lastIndexOf(u':');
    bool isNumber = true;
    const std::uint16_t port = colon < 0 ? usualPort : text.mid(colon + 1).toUShort(&isNumber);
    const QString host = text.left(colon).trimmed();
    return isNumber && port != 0 && isHost(host) ? std::optional(HostAndPort{host, port}) : std::nullopt;
}

QString firstOf(std::initializer_list<QString> texts)
{
    const auto found = std::find_if(texts.begin(), texts.end(), [](const QString &text) { return !text.isEmpty(); });
    return found == texts.end() ? QString() : *found;
}

QString variable(const char *name)
{
    return qEnvironmentVariable(name).trimmed();
}

[[noreturn]] void refuseVariable(const char *name, const QString &value, const char *reason)
{
    throw std::invalid_argument(QStringLiteral("the environment variable %1=%2 is %3")
                                    .arg(QLatin1String(name), value, QLatin1String(reason))
                                    .toStdString());
}

QString usualStateFolder()
{
    const QString base = firstOf({variable("XDG_STATE_HOME"), QDir::homePath() + QLatin1String("/.local/state")});
    return base + QLatin1String("/korve");
}

} // namespace

HostSettings::HostSettings(const CommandLine &line) : line(line) {}

CorbaCommon::OrbSettings HostSettings::orb() const
{
    CorbaCommon::OrbSettings settings = CorbaCommon::OrbSettings::fromEnvironment();
    settings.address = address();
    settings.publishedAddress = publishedAddress();
    const bool servesNames = !line.import && line.roles.contains(Role::CentralService);
    const QString elsewhere = centralServiceElsewhere(); // a wrong one is refused also where it is not needed
    settings.centralService = servesNames ? publishedAddress() : elsewhere;
    if (line.import)
        return settings;
    if (servesNames)
        settings.ports.push_back(CorbaCommon::OrbSettings::centralServicePort);
    if (line.roles.contains(Role::Manager))
        settings.ports.push_back(VtServer::port);
    return settings;
}

CentralObjectConfiguration HostSettings::centralService() const
{
    CentralObjectConfiguration configuration;
    configuration.systemName = text("cco", "system", QStringLiteral("KORVE")).toStdString();
    configuration.subsystemName = subsystem("subsystem", text("cco", "subsystem", QStringLiteral("Main")));
    configuration.workstationName = workstation().toStdString();
    configuration.systemWorkstations = list("cco", "systemWorkstations");
    for (const std::string &name : list("cco", "subsystems"))
        configuration.subsystems.push_back(
            {subsystem("subsystems", QString::fromStdString(name)), list("workstations", name.c_str())});
    for (const std::string &peer : list("cco", "peers")) {
        const QString text = QString::fromStdString(peer);
        const auto where = hostAndPort(text, CorbaCommon::OrbSettings::centralServicePort);
        if (!where)
            refuse("cco", "peers", text, "not HOST or HOST:PORT");
        configuration.peers.push_back({where->host.toStdString(), where->port});
    }
    return configuration;
}

ManagerConfiguration HostSettings::manager() const
{
    ManagerConfiguration configuration;
    configuration.workstationName = workstation();
    configuration.stateFolder = stateFolder(Role::Manager);
    const QString archive = text("manager", "archive");
    if (!archive.isEmpty()) {
        const auto where = hostAndPort(archive, 0);
        if (!where)
            refuse("manager", "archive", archive, "not HOST:PORT");
        configuration.archive = {where->host, where->port};
    }
    return configuration;
}

recorder::RecorderConfiguration HostSettings::recorder() const
{
    recorder::RecorderConfiguration configuration;
    configuration.statePath = stateFolder(Role::Recorder);
    configuration.deviceId = deviceId();
    configuration.firmwareVersion =
        text("recorder", "firmware", QString::fromStdString(configuration.firmwareVersion)).toStdString();
    configuration.linkAddress = address();
    configuration.publishedLinkAddress = publishedAddress();
    return configuration;
}

QString HostSettings::deviceId() const
{
    const QString id = text("recorder", "device");
    if (id.isEmpty())
        return recorder::deviceIdOf(stateFolder(Role::Recorder), publishedAddress());
    if (!recorder::isDeviceId(id))
        refuse("recorder", "device", id, "not printable ASCII without blanks and \"/\"");
    return id;
}

QString HostSettings::stateFolder(Role role) const
{
    const QString given = firstOf({line.stateFolder, variable("STATE_DIRECTORY")});
    const QString below = QLatin1Char('/') + nameOf(role);
    if (given.isEmpty())
        return usualStateFolder() + below;
    return QDir(given).absolutePath() + (line.roles.size() == 1 ? QString() : below);
}

QString HostSettings::faultsFile() const
{
    const QString given = text("host", "faults");
    if (!line.faultsFile.isEmpty() || given.isEmpty())
        return line.faultsFile;
    return QFileInfo(line.configFile).absoluteDir().absoluteFilePath(given);
}

QString HostSettings::text(const char *group, const char *key, const QString &otherwise) const
{
    if (line.configFile.isEmpty())
        return otherwise;
    const auto file = CfgCenter::CreateCfg(QString::fromUtf8(group), CfgCenter::FileView, line.configFile);
    return firstOf({file->text(QString::fromUtf8(key), otherwise).trimmed(), otherwise});
}

std::vector<std::string> HostSettings::list(const char *group, const char *key) const
{
    std::vector<std::string> items;
    for (const QString &item : text(group, key).split(u',', Qt::SkipEmptyParts))
        if (!item.trimmed().isEmpty())
            items.push_back(item.trimmed().toStdString());
    return items;
}

QString HostSettings::address() const
{
    const QString given = variable("KORVE_ADDRESS");
    if (!given.isEmpty() && !isHost(given))
        refuseVariable("KORVE_ADDRESS", given, "not an address");
    return given.isEmpty() ? host("address", QStringLiteral("127.0.0.1")) : given;
}

QString HostSettings::publishedAddress() const
{
    return host("publish", address());
}

QString HostSettings::centralServiceElsewhere() const
{
    const QString given = variable("KORVE_CCO");
    const QString text = firstOf({given, this->text("host", "cco"), publishedAddress()});
    const bool isMeant = !CorbaCommon::centralServiceReference(text).isEmpty();
    if (!isMeant && !given.isEmpty())
        refuseVariable("KORVE_CCO", given, "not HOST or HOST:PORT");
    if (!isMeant)
        refuse("host", "cco", text, "not HOST or HOST:PORT");
    return text;
}

QString HostSettings::host(const char *key, const QString &otherwise) const
{
    const QString given = text("host", key, otherwise);
    if (!isHost(given))
        refuse("host", key, given, "not an address");
    return given;
}

std::string HostSettings::subsystem(const char *key, const QString &name) const
{
    if (name.contains(u'/'))
        refuse("cco", key, name, "not a name: it has a \"/\"");
    return name.toStdString();
}

void HostSettings::refuse(const char *group, const char *key, const QString &value, const char *reason) const
{
    throw std::invalid_argument(
        QStringLiteral("%1: [%2] %3=%4 is %5")
            .arg(line.configFile, QLatin1String(group), QLatin1String(key), value, QLatin1String(reason))
            .toStdString());
}

QString HostSettings::workstation() const
{
    return text("host", "workstation", publishedAddress());
}

} // namespace installation
