#pragma once

#include "installation/manager/channel.h"

#include <QByteArray>

namespace installation
{

// The form in which a channel is kept. Errors: throws std::runtime_error for a text that is not of that form.

QByteArray toText(const ChannelSettings &settings);
QByteArray toText(const ChannelRun &run);
ChannelSettings settingsFrom(const QByteArray &text);
ChannelRun runFrom(const QByteArray &text);

} // namespace installation
