#pragma once

namespace KorveCommon
{
/// What a tic leads to.
enum ConnectionType {
    ChannelConnection = 0, ///< the tree of one channel
    DeviceConnection = 1,  ///< the tree of the devices
    ServerConnection = 2,  ///< the server's command tree
};
} // namespace KorveCommon
