#include "connectionmanagement/abstractserverconnectiondata.h"

#include <gtest/gtest.h>

#include <cstring>

namespace
{
using namespace KorveCommon;

/// Gives access to the protected operations.
class Slots : public AbstractServerConnectionData
{
public:
    template <class Function> static std::ptrdiff_t of(Function function)
    {
        // A pointer to a virtual member function begins with one plus its offset in the table.
        std::ptrdiff_t offset;
        std::memcpy(&offset, &function, sizeof offset);
        return (offset - 1) / std::ptrdiff_t(sizeof(void *));
    }
    static std::ptrdiff_t initialize() { return of(static_cast<void (Slots::*)()>(&Slots::Initialize)); }
};

TEST(ServerConnectionOperation, StandsInItsPublishedPlace)
{
    using I = IServerConnectionData;
    const auto first = Slots::initialize();
    const std::ptrdiff_t order[] = {
        Slots::of(static_cast<void (I::*)(const QString &)>(&I::Initialize)),
        Slots::of(static_cast<IVtClient *(I::*)(const QString &, ConnectionType)>(&I::getVtClient)),
        Slots::of(static_cast<IVtClient *(I::*)(ConnectionType)>(&I::getVtClient)),
        Slots::of(&I::SetChannelId_ValuePath),
        Slots::of(&I::GetChannelId_ValuePath),
        Slots::of(&I::SetChannelId),
        Slots::of(&I::GetChannelId),
        Slots::of(&I::GetConfiguration),
        Slots::of(&I::GetBasePath),
        Slots::of(&I::GetDeviceBasePath),
        Slots::of(&I::GetStatusPath),
        Slots::of(&I::GetBitePath),
        Slots::of(&I::IsConnected),
        Slots::of(&I::IsChannelConnected),
        Slots::of(&I::IsDeviceConnected),
        Slots::of(&I::IsServerConnected),
        Slots::of(&I::ConnectToAllSubsystems),
        Slots::of(&I::CreateVTConnectTics),
        Slots::of(&I::ResetVtClientConnection),
        Slots::of(&Slots::GetSubsystemList),
        Slots::of(&Slots::sl_notifyServerAvailablity),
        Slots::of(&Slots::sl_currentSubsystemChanged),
        Slots::of(&Slots::sl_onConnected),
    };
    for (std::size_t i = 0; i < std::size(order); ++i)
        EXPECT_EQ(order[i], first + std::ptrdiff_t(i) + 1) << i;
}
} // namespace
