#pragma once

#include "installation/manager/channel.h"

namespace installation
{

/// @throws TQ_KRV::exGen for settings that no channel can have: a class of data rates that recorders do not know, a
/// format that is no stream of samples, neither channel manager nor address, an address that is none or does not go
/// with the kind of interface, a rate or a size of samples beyond what a link takes.
void checkSettings(const ChannelSettings &settings);

/// @throws TQ_KRV::exGen
[[noreturn]] void refuse(TQ_KRV::eGenKind kind, const char *reason);

} // namespace installation
