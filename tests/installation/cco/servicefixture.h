#pragma once

#include "idl/cco.hh"
#include "installation/cco/centralobjectservice.h"
#include "tests/installation/cco/recordingcallback.h"

#include <gmock/gmock.h>

#include <optional>

using Texts = std::vector<std::string>;

Texts textsOf(const CCO::seqString *owned);
CCO::seqString sequenceOf(const Texts &texts);

/// "CCO/LocalSystem/SubSystems/SUBSYSTEM/CentralServices/NAME"
std::string pathIn(const std::string &subsystem, const std::string &name);

/// Waits, bounded, until @p condition holds.
bool waitUntil(const std::function<bool()> &condition, std::chrono::milliseconds limit = std::chrono::seconds(10));

/// The service of subsystem "South" on workstation "ws1", in this process, with short intervals; and one living object
/// to put into it.
class ServiceFixture : public testing::Test
{
protected:
    ServiceFixture();
    ~ServiceFixture() override;

    /// Starts the service; a test that needs another configuration changes `configuration` before.
    void startService();

    bool knows(const std::string &path);
    Texts valuesOf(const std::string &path);

    static const char *const managerName; ///< "KorveManager/IF_KRV_c_KRV"

    installation::CentralObjectConfiguration configuration;
    std::optional<installation::CentralObjectService> service;
    CCO::IF_CCO_c_var cco;
    const CallbackOwner owner{RecordingCallback::make()};
    const CCO::Callback_var object{owner->reference()};
};
