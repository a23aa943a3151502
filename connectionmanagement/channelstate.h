#pragma once

namespace KorveCommon::ChannelState
{
/// The state of a record, as far as a channel cares.
enum State {
    Idle = 0,
    ReadyForReplay = 1,
    Replaying = 2,
};
} // namespace KorveCommon::ChannelState
