#pragma once

#include "installation/cco/centralobjectconfiguration.h"
#include "installation/manager/managerconfiguration.h"
#include "installation/program/commandline.h"
#include "installation/recorder/recorderservice.h"

#include "orbconnection/orbsettings.h"

namespace installation
{

/// The settings of one host: its INI file, the environment, which beats the file, and the command line.
///
/// Errors: a file that cannot be read throws CfgError, a text that cannot be meant std::invalid_argument
/// that names file (or variable), key and text.
class HostSettings
{
public:
    explicit HostSettings(const CommandLine &line);

    CorbaCommon::OrbSettings orb() const;
    CentralObjectConfiguration centralService() const;
    ManagerConfiguration manager() const;
    recorder::RecorderConfiguration recorder() const;
    /// As the file says, else as recorder::deviceIdOf() does. @throws recorder::RecorderError
    QString deviceId() const;
    QString stateFolder(Role role) const;
    /// The path of the fault script; empty when there is none. A relative one counts from the folder of the INI file.
    QString faultsFile() const;

private:
    QString text(const char *group, const char *key, const QString &otherwise = {}) const;
    /// The items of a text with commas.
    std::vector<std::string> list(const char *group, const char *key) const;
    QString address() const;
    QString publishedAddress() const;
    /// The address of a central object service in another process.
    QString centralServiceElsewhere() const;
    /// An address of the group "host".
    QString host(const char *key, const QString &otherwise) const;
    /// @p name, which is a part of paths.
    std::string subsystem(const char *key, const QString &name) const;
    [[noreturn]] void refuse(const char *group, const char *key, const QString &value, const char *reason) const;
    QString workstation() const;

    const CommandLine line;
};

} // namespace installation
