#pragma once

#include "installation/manager/adminservant.h"
#include "installation/manager/channeldirectory.h"
#include "installation/manager/devicewatch.h"

namespace installation
{

/// Who shows what a manager knows. Each may be empty, and is called on the threads of the manager.
struct ManagerListeners {
    DeviceWatch::Listener devices{};
    ChannelDirectory::Listener channels{};
    AdminServant::RecordListener record{}; ///< somebody wants to look at its details
};

} // namespace installation
