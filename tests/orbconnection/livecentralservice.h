#pragma once

#include "orbconnection/orbhandler.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/serviceprocess.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

/// A central object service of subsystem "Alpha", workstation "station-a", at an address that the whole program keeps:
/// the ORB of this process knows it from the start.
class LiveCentralService : public testing::Test
{
protected:
    LiveCentralService();

    static const QString &address();
    void startService();
    void killService();
    ServiceProcess &service() { return *process; }
    /// Straight at the central object service, past what is tested.
    CCO::IF_CCO_c_ptr direct() const;
    /// Runs the event loop until @p condition holds; false when it does not for long.
    static bool comesTrue(const std::function<bool()> &condition);

    CorbaCommon::OrbHandler &orb;

private:
    std::unique_ptr<ServiceProcess> process;
};

CCO::seqString sequenceOf(const std::vector<std::string> &texts);
