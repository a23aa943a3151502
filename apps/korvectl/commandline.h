#pragma once

#include <QString>

#include <chrono>
#include <optional>

namespace korvectl
{

enum class Command { Devices, Records };

/// What the program is told to do.
struct CommandLine {
    Command command = Command::Devices;
    QString device;    ///< empty: all
    QString subsystem; ///< empty: the local one
    std::chrono::milliseconds timeout{5000};
    bool json = false;
    bool follow = false; ///< of the records: go on telling what becomes of them
    unsigned traceMask = 0;

    /// Without result when the program is to end with @p exitCode: help was asked for, or the line is wrong, which has
    /// been said then.
    static std::optional<CommandLine> parse(int argc, char **argv, int &exitCode);
};

} // namespace korvectl
