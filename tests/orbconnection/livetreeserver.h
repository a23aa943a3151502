#pragma once

#include "orbconnection/orbhandler.h"
#include "orbconnection/vtconnectdata.h"
#include "orbconnection/mirrortiming.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/serviceprocess.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

/// A tree server in a process of its own, with "/K/Device/State" = "idle", at an address of its own.
class LiveTreeServer : public testing::Test
{
protected:
    LiveTreeServer();
    /// Empties the tree of this process.
    ~LiveTreeServer() override;

    void startServer(std::size_t queueBytes = 16 * 1024 * 1024);
    void killServer();
    ServiceProcess &server() { return *process; }
    QString atServer(const char *path);
    QString here(const char *path) const;
    VtConnectData address() const { return {QString(), lease.address()}; }
    /// Runs the event loop until @p condition holds; false when it does not for long.
    static bool comesTrue(const std::function<bool()> &condition);

    static MirrorTiming timing();

    CorbaCommon::OrbHandler &orb = CorbaCommon::OrbHandler::Instance();
    const LoopbackLease lease;

private:
    std::unique_ptr<ServiceProcess> process;
};
