#include "installation/program/hostsettings.h"

#include "appruntime/cfgcenter.h"
#include "orbconnection/vtserver.h"

#include <QDir>

#include <algorithm>
#include <stdexcept>

namespace installation
{

namespace
{

struct HostAndPort {
    QString host;
    std::uint16_t port;
};

/// "HOST:PORT", or "HOST" when there is a usual port.
HostAndPort hostAndPort(const QString &text, std::uint16_t usualPort)
{
    const int colon = text.lastIndexOf(u':');
    bool isNumber = true;
    const std::uint16_t port = colon < 0 ? usualPort : text.mid(colon + 1).toUShort(&isNumber);
    const QString host = text.left(colon).trimmed();
    if (!isNumber || port == 0 || host.isEmpty())
        throw std::invalid_argument(QStringLiteral("\"%1\" is not HOST:PORT").arg(text).toStdString());
    return {host, port};
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
    const QString configured = firstOf({variable("KORVE_CCO"), text("host", "cco")});
    settings.centralService = servesNames || configured.isEmpty() ? publishedAddress() : configured;
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
    configuration.subsystemName = text("cco", "subsystem", QStringLiteral("Main")).toStdString();
    configuration.workstationName = workstation().toStdString();
    configuration.systemWorkstations = list("cco", "systemWorkstations");
    for (const std::string &name : list("cco", "subsystems"))
        configuration.subsystems.push_back({name, list("workstations", name.c_str())});
    for (const std::string &peer : list("cco", "peers")) {
        const HostAndPort where =
            hostAndPort(QString::fromStdString(peer), CorbaCommon::OrbSettings::centralServicePort);
        configuration.peers.push_back({where.host.toStdString(), where.port});
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
        const HostAndPort where = hostAndPort(archive, 0);
        configuration.archive = {where.host, where.port};
    }
    return configuration;
}

recorder::RecorderConfiguration HostSettings::recorder() const
{
    recorder::RecorderConfiguration configuration;
    configuration.statePath = stateFolder(Role::Recorder);
    configuration.firmwareVersion =
        text("recorder", "firmware", QString::fromStdString(configuration.firmwareVersion)).toStdString();
    return configuration;
}

QString HostSettings::deviceId() const
{
    const QString id = text("recorder", "device", QStringLiteral("KORVE1"));
    const bool isPlain = std::all_of(id.cbegin(), id.cend(), [](QChar character) {
        return character > u' ' && character < u'\x7f' && character != u'/';
    });
    if (!isPlain)
        throw std::invalid_argument(
            QStringLiteral("[recorder] device=%1 has other characters than ASCII ones, or a \"/\"")
                .arg(id)
                .toStdString());
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
    return firstOf({variable("KORVE_ADDRESS"), text("host", "address"), QStringLiteral("127.0.0.1")});
}

QString HostSettings::publishedAddress() const
{
    return text("host", "publish", address());
}

QString HostSettings::workstation() const
{
    return text("host", "workstation", publishedAddress());
}

} // namespace installation
