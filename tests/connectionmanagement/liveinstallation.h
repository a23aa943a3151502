#pragma once

#include "orbconnection/orbhandler.h"
#include "tests/connectionmanagement/fakemanager.h"
#include "tests/support/serviceprocess.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>

/// A central object service of subsystem "Alpha" in a process of its own, a neighbour for subsystem "West" when it is
/// wanted, and a recorder manager in this process. Addresses are kept for the whole program, and are the workstations'
/// names.
class LiveInstallation : public testing::Test
{
protected:
    LiveInstallation();
    ~LiveInstallation() override;

    static const QString &address();
    static const QString &neighbourAddress();
    void startService();
    /// As startService(), but the ORB of this process does not know yet that it is there.
    void runService();
    void stopService() { service.reset(); }
    /// Returns when the first service knows of the neighbour's subsystem.
    void startNeighbour();

    /// Makes the manager known to the central object service of a host, or takes it from there.
    void registerManager(const QString &host = address());
    void unregisterManager();
    /// Says that the manager's value tree can be reached.
    void announceTree();

    CCO::IF_CCO_c_ptr centralService(const QString &host) const;
    /// Runs the event loop until @p condition holds; false when it does not for long.
    static bool comesTrue(const std::function<bool()> &condition);

    CorbaCommon::OrbHandler &orb;
    FakeManager manager;
    TQ_KRV::IF_KRV_c_KRV_var managerReference;

private:
    std::unique_ptr<ServiceProcess> service;
    std::unique_ptr<ServiceProcess> neighbour;
};
