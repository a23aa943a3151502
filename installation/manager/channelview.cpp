#include "installation/manager/channelview.h"

#include "korvebase/corbatoclientconverter.h"
#include "objectmodel/channeldata.h"

#include <algorithm>
#include <limits>

namespace installation
{

namespace
{

using KORVE_XML::Admin;
using State = ChannelRun::State;
namespace ToClient = KorveCommon::CorbaToClientConverter;

bool isLoop(const ChannelRun &run)
{
    return run.count != 0; // of a recording: MiB
}

} // namespace

Admin::RecordReplayAllModes recordingModeOf(const ChannelRun &run)
{
    switch (run.state) {
    case State::RecordStarting:
        return Admin::RecordReplayAllModes_StartRecord;
    case State::Recording:
        return isLoop(run) ? Admin::RecordReplayAllModes_RecordContinuous : Admin::RecordReplayAllModes_Record;
    case State::RecordStopping:
        return Admin::RecordReplayAllModes_RecordStopping;
    default:
        return Admin::RecordReplayAllModes_RecordReplayStopped;
    }
}

Admin::ReplayMode replayModeOf(const ChannelRun &run)
{
    switch (run.state) {
    case State::ReplayStarting:
        return Admin::Replay_Starting;
    case State::ReplayRunning:
        return Admin::Replay_Running;
    case State::ReplayPausing:
        return Admin::Replay_Pausing;
    case State::ReplayPaused:
        return Admin::Replay_Paused;
    case State::ReplayStopping:
        return Admin::Replay_Stopping;
    default:
        return Admin::Replay_Idle;
    }
}

Admin::RecordReplayMode modeOf(const ChannelRun &run)
{
    if (run.isRecording())
        return isLoop(run) ? Admin::RecordReplayMode_RecordContinuous : Admin::RecordReplayMode_Record;
    if (!run.isReplay())
        return Admin::RecordReplayMode_Stopped;
    if (run.state == State::ReplayPausing || run.state == State::ReplayPaused)
        return Admin::RecordReplayMode_ReplayPause;
    return run.count == 0 ? Admin::RecordReplayMode_ReplayContinuous : Admin::RecordReplayMode_Replay;
}

double timeAtUs(const ChannelProgress &progress, quint64 position)
{
    const auto start = static_cast<double>(progress.startUs);
    if (progress.recordEnd <= progress.recordBegin || progress.stopUs <= progress.startUs)
        return start;
    const quint64 inside = std::clamp(position, progress.recordBegin, progress.recordEnd);
    const auto part = static_cast<double>(inside - progress.recordBegin) /
                      static_cast<double>(progress.recordEnd - progress.recordBegin);
    return start + part * static_cast<double>(progress.stopUs - progress.startUs);
}

qint64 lengthUs(const ChannelProgress &progress)
{
    constexpr quint64 last = std::numeric_limits<qint64>::max();
    return static_cast<qint64>(std::min(progress.stopUs - std::min(progress.startUs, progress.stopUs), last));
}

int cutToInt(quint64 number)
{
    constexpr quint64 last = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(number, last));
}

QString textOf(TQ_KRV::eDATARATE_CLASS rate)
{
    return KORVE_XML::ChannelData::GetDataRates().value(ToClient::convertDataRateClassFromClient(rate));
}

QString textOf(TQ_KRV::eDATA_FORMAT format)
{
    return KORVE_XML::ChannelData::GetDataFormats().value(ToClient::convertDataFormatFromClient(format));
}

QString registrationOf(const ChannelSettings &settings)
{
    enum { Off, OnStartup, OnFinished }; // the order of the texts
    const QStringList texts = KORVE_XML::ChannelData::GetPelinRegistrationModes();
    if (!settings.registersAtArchive)
        return texts.value(Off);
    return texts.value(settings.forcesRegistration ? OnStartup : OnFinished);
}

} // namespace installation
