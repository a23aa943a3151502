#pragma once

#include "benchmarks/remote/service.h"

#include "connectionmanagement/hmiserverconnectiondata.h"
#include "connectionmanagement/korveguitoservercorbahandler.h"

#include <memory>

/// A display station that has found the manager of the other process, and the same manager without a handler.
class Station
{
public:
    /// Found when first asked for.
    static Station &instance();

    const std::shared_ptr<KorveCommon::HMIServerConnectionData> data;
    const std::shared_ptr<KorveGUI::KorveGuiToServerCorbaHandler> handler;
    TQ_KRV::IF_KRV_c_KRV_var manager;

private:
    Station();
};
