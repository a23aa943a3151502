#pragma once

#include "tests/installation/program/installationfixture.h"
#include "tests/commands/commandsunderfire.h"

#include <chrono>

/// A client, a manager that is about to go, and a recorder with one record.
class OutageFixture : public InstallationFixture, public testing::WithParamInterface<CommandUnderFire>
{
protected:
    static void setUp(std::chrono::milliseconds callLimit);

    static std::chrono::microseconds timeOf(const std::function<void()> &work);
    /// Compares what the command of that round answered with what has been done.
    static void check(World &world, int round, unsigned long number);

    static inline int lastRound = 0;
};
