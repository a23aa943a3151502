#pragma once

#include "installation/manager/channel.h"

#include "objectmodel/admin.h"

namespace installation
{

// A channel in the words of the value tree.

KORVE_XML::Admin::RecordReplayAllModes recordingModeOf(const ChannelRun &run);
KORVE_XML::Admin::ReplayMode replayModeOf(const ChannelRun &run);
KORVE_XML::Admin::RecordReplayMode modeOf(const ChannelRun &run);

/// The time at which the sample at @p position of the record was taken, in microseconds since 1970.
double timeAtUs(const ChannelProgress &progress, quint64 position);

QString textOf(TQ_KRV::eDATARATE_CLASS rate);
QString textOf(TQ_KRV::eDATA_FORMAT format);
/// When records of the channel are registered at the archive.
QString registrationOf(const ChannelSettings &settings);

} // namespace installation
