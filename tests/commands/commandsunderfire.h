#pragma once

#include "tests/commands/world.h"

#include <functional>
#include <ostream>
#include <vector>

/// A command of the library, and how to see at the recorder how often it has been carried out.
///
/// @p round is another number each time, so that each try leaves its own mark.
struct CommandUnderFire {
    const char *name;
    /// Makes what the command needs, at the recorder.
    std::function<void(World &, int round)> prepare;
    /// Gives it; the number that it answers.
    std::function<unsigned long(World &, int round)> give;
    /// How often it has been done: with a command that only asks, 1 when its answer was right.
    std::function<int(World &, int round)> effects;
    std::function<bool(const World &)> outcomeIsUnknown;
    unsigned long whenSilent = 210; ///< what it answers when the manager does not
    bool onlyAsks = false;
};

const std::vector<CommandUnderFire> &commandsUnderFire();

/// For the messages of failed tests.
inline void PrintTo(const CommandUnderFire &command, std::ostream *out)
{
    *out << command.name;
}
