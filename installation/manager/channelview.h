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

/// How long the record is by now, in microseconds; 0 for one that ends before it begins.
qint64 lengthUs(const ChannelProgress &progress);

/// For a value of the tree that holds no more: the greatest one that it can.
int cutToInt(quint64 number);

QString textOf(TQ_KRV::eDATARATE_CLASS rate);
QString textOf(TQ_KRV::eDATA_FORMAT format);
/// When records of the channel are registered at the archive.
QString registrationOf(const ChannelSettings &settings);

} // namespace installation
