#pragma once

#include "installation/cco/centralobjectservice.h"
#include "installation/manager/managerservice.h"
#include "installation/recorder/recorderservice.h"

#include "idl/cco.hh"
#include "idl/korvemanager.hh"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <functional>
#include <optional>

/// A central object service, the recorder "REC1" and a manager, all in this process, with short intervals.
class ManagerFixture : public testing::Test
{
protected:
    ManagerFixture();
    ~ManagerFixture() override;

    void startManager();
    void startRecorder(std::chrono::milliseconds answerLimit = installation::recorder::RecorderConfiguration().answerLimit);
    void registerRecorder(const char *device, CORBA::Object_ptr recorder);
    /// Ends the recorder, whose registration stays.
    void stopRecorder();
    /// Waits, bounded.
    bool becomesAvailable(const char *device) { return becomes(device, 1); }
    bool becomesUnavailable(const char *device) { return becomes(device, 0); }
    /// Returns the id of a new record of that many samples.
    QString importRecord(const QString &name, int sampleCount);

    QTemporaryDir folder;
    installation::ManagerConfiguration configuration;
    installation::CentralObjectService centralService;
    CCO::IF_CCO_c_var cco;
    std::optional<installation::recorder::RecorderService> recorder;
    std::optional<installation::ManagerService> service;
    TQ_KRV::IF_KRV_c_KRV_var manager;
    TQ_KRV::IF_KORVE_Admin_var admin;

private:
    bool becomes(const char *device, CORBA::ULong state);
};

/// The kind of the `exKRV` that @p call raises.
TQ_KRV::IF_KRV_c_KRV::eKRVKind kindRaisedBy(const std::function<void()> &call);
QString textOf(const CORBA::WChar *wide);
