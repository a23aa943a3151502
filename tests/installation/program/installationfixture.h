#pragma once

#include "idl/cco.hh"
#include "idl/korve.hh"
#include "idl/korvemanager.hh"
#include "tests/support/serviceprocess.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <functional>
#include <memory>

/// The services of a host as separate processes on a leased address, with the recorder "REC1"; this program is their
/// client, by plain calls. Started once for all tests.
class InstallationFixture : public testing::Test
{
protected:
    /// What a run of the program says and how it ends.
    struct Run {
        int exitCode;
        QString output;
        QString errors;
    };

    static void SetUpTestSuite();
    static void TearDownTestSuite();

    static std::unique_ptr<ServiceProcess> start(const char *role);
    static QStringList argumentsOf(const char *role);
    /// The one of the role that runs, or ran.
    static std::unique_ptr<ServiceProcess> &process(const char *role);
    static Run run(const QStringList &arguments);
    /// As the program's sub-command.
    static Run import(const QStringList &files);
    static QString filePath(const char *name) { return shared->folder.filePath(QLatin1String(name)); }
    /// The same for all suites, since this program's ORB is set up for it.
    static QString address();

    /// Nil when there is none now. The caller releases it.
    static TQ_KRV::IF_KRV_c_KRV_ptr manager();
    /// Waits, bounded, for a manager that has the device available.
    static bool managerKnowsTheDevice();
    /// Of all records, as the manager lists them.
    static QStringList recordIds();

    struct Shared {
        QTemporaryDir folder;
        std::unique_ptr<ServiceProcess> centralService;
        std::unique_ptr<ServiceProcess> recorder;
        std::unique_ptr<ServiceProcess> manager;
    };
    static std::unique_ptr<Shared> shared;
};
