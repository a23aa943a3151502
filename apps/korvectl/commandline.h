#pragma once

#include <QString>

#include <chrono>
#include <optional>

namespace korvectl
{

enum class Command { Devices, Records, TreeList, TreeGet, TreeWatch, Doctor, Completion, Complete };

/// What the program is told to do.
struct CommandLine {
    Command command = Command::Devices;
    QString device;    ///< empty: all
    QString subsystem; ///< empty: the local one
    QString path;      ///< in the value tree
    std::chrono::milliseconds timeout{5000};
    std::chrono::milliseconds watchTime{0}; ///< 0: for good
    int changeLimit = 0;                    ///< 0: for good
    bool recursive = false;
    bool json = false;
    bool follow = false; ///< of the records: go on telling what becomes of them
    unsigned traceMask = 0;
    QString typedLine; ///< as it is being typed, up to the cursor
    QString typedWord; ///< the end of that which the shell is going to replace

    /// Without result when the program is to end with @p exitCode: help was asked for, or the line is wrong, which has
    /// been said then.
    static std::optional<CommandLine> parse(int argc, char **argv, int &exitCode);
};

} // namespace korvectl
