#pragma once

#include "idl/korve.hh"
#include "idl/korvemanager.hh"
#include "tests/support/loopbacklease.h"
#include "tests/support/serviceprocess.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <chrono>
#include <functional>
#include <map>
#include <memory>

/// The services of a host under a fault script, with the recorder "REC1"; this program is their client. Each test has
/// its own, at an address of its own, so that no connection to a service that was killed is in the way.
class FaultyInstallation : public testing::Test
{
protected:
    /// How long this program waits for an answer.
    static constexpr std::chrono::milliseconds callLimit{4000};

    FaultyInstallation();

    /// Starts the services as separate processes, or all in one. Returns when they are ready.
    void start(const QByteArray &script) { startRoles(script, {"cco", "recorder", "manager"}); }
    void startInOneProcess(const QByteArray &script) { startRoles(script, {"all"}); }
    /// For services that are started from now on.
    void setScript(const QByteArray &script) { writeFile("script.faults", script); }
    /// Starts the service of that role once more, with what it kept.
    void startAgain(const char *role) { processes[role] = launched(role); }
    /// "all" when they share one.
    ServiceProcess &process(const char *role) { return *processes.at(role); }

    /// Both wait, bounded, for what is registered; the caller releases them.
    TQ_KRV::IF_KRV_c_KRV_ptr manager();
    TQ_KRV::IF_KORVE_Admin_ptr admin();
    TQ_KORVE::IF_Control_ptr recorder();
    /// Returns when the manager has the recorder, with one record; its id.
    std::string importRecord();

    /// What the program says of a script that it ends by; empty when it does not end by itself with an exit code of 1.
    QString refusalOf(const QByteArray &script);

    /// Runs the event loop until @p condition holds; false when it does not for long.
    static bool comesTrue(const std::function<bool()> &condition);
    const QString &address() const { return lease.address(); }
    /// Relative to the folder of what the services keep.
    QString filePath(const QString &relative) const { return folder.filePath(relative); }

private:
    void startRoles(const QByteArray &script, const std::vector<const char *> &names);
    QStringList argumentsOf(const std::string &role) const;
    std::unique_ptr<ServiceProcess> launched(const std::string &role);
    CORBA::Object_ptr registered(const char *name);
    void writeFile(const char *name, const QByteArray &text);

    const LoopbackLease lease;
    const QTemporaryDir folder;
    std::map<std::string, std::unique_ptr<ServiceProcess>> processes;
};
