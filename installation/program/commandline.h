#pragma once

#include <QStringList>

#include <optional>

namespace installation
{

/// A service of a host.
enum class Role { CentralService, Recorder, Manager };

/// In the order in which services start.
constexpr Role allRoles[] = {Role::CentralService, Role::Recorder, Role::Manager};

QString nameOf(Role role);

/// What the program is told to do.
struct CommandLine {
    struct Import {
        QString device;
        QList<QByteArray> files; ///< as they were typed, in whatever characters
    };

    QList<Role> roles; ///< in the order of starting
    QString configFile;
    QString stateFolder;
    bool endsWithParent = false;
    QString faultsFile{}; ///< empty: nothing goes wrong on purpose
    std::optional<Import> import{}; ///< instead of serving

    /// Without result when the program is to end with @p exitCode: help was asked for, or the line is wrong, which has
    /// been said then. Arguments that begin with "-ORB" are left to the ORB.
    static std::optional<CommandLine> parse(int argc, char **argv, int &exitCode);
};

} // namespace installation
