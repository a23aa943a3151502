#pragma once

#include "tests/commands/commandsunderfire.h"
#include "tests/installation/program/installationfixture.h"

#include <chrono>

/// A client, a manager that is about to go, and a recorder with records.
class OutageFixture : public InstallationFixture
{
protected:
    static void setUp(std::chrono::milliseconds callLimit, int records);

    static std::chrono::microseconds timeOf(const std::function<void()> &work);
    /// Compares what the command of that round answered with what has been done.
    static void check(const CommandUnderFire &command, World &world, int round, unsigned long number);

    static inline int lastRound = 0;
};
