#include "installation/manager/channelpublisher.h"

#include "installation/manager/channelview.h"

#include "appruntime/threadswitchingadministration.h"
#include "korvebase/errordescriptor.h"
#include "korvebase/valuenames.h"
#include "korvebase/valuetreepaths.h"
#include "korvebase/vthelper.h"
#include "valuetreelib/valueselection.h"

#include <algorithm>

namespace installation
{

namespace
{

namespace name = korve::name;
using KORVE_XML::Admin;
using Text = values::ValuePtr<values::Value<QString>>;
using Flag = values::ValuePtr<values::Value<bool>>;
using Number = values::ValuePtr<values::Value<int>>;
using Count = values::ValuePtr<values::ValueNumeric<qint64>>;
using Position = values::ValuePtr<values::ValueNumeric<double>>;
using Choice = values::ValuePtr<values::ValueSelection>;

QString pathOf(const QString &id)
{
    return korve::path::channel + u'/' + id + u'/';
}

QString commandErrorPath()
{
    return korve::path::command + u'/' + name::ErrorCode;
}

/// A value that somebody has removed stays away.
template <typename Held, typename Content> void set(values::ValuePtr<Held> &value, const Content &content)
{
    if (value)
        value->SetValue(content, nullptr);
}

void select(Choice &value, long key)
{
    if (value)
        value->selectKey(key, nullptr);
}

} // namespace

/// What stands below one channel's node.
class ChannelPublisher::Values
{
public:
    explicit Values(const QString &path);
    void set(const Channel &channel);

private:
    void setSettings(const ChannelSettings &settings);
    void setRun(const Channel &channel);

    Text deviceId, recordId, recordName, allowedDevices, rate, secondRate, replayRate, ownRate, channelName, format,
        errorCode, session, registration;
    Choice recordingMode, replayMode, mode;
    Flag recordFlag, replayFlag, triggered;
    Number sizeInKb, replays, timeout, sampleBytes;
    Count duration, counterStart, sampleRate;
    Position position, begin, end, startPosition, stopPosition;
};

ChannelPublisher::Values::Values(const QString &path)
{
    const auto create = [&](auto &value, QLatin1String valueName) { return value.getOrCreate(path + valueName); };
    const auto offer = [&](Choice &value, QLatin1String valueName, const QStringList &texts) {
        if (create(value, valueName))
            value->setTexts(texts, nullptr);
    };
    const auto measure = [&](Position &value, QLatin1String valueName) {
        if (create(value, valueName))
            VTHelper::Instance().SetMinMax(value, nullptr);
    };
    for (const auto &[value, valueName] :
         std::initializer_list<std::pair<Text *, QLatin1String>>{{&deviceId, name::DeviceID},
                                                                 {&recordId, name::RecordID},
                                                                 {&recordName, name::RecordName},
                                                                 {&allowedDevices, name::AllowedDevices},
                                                                 {&rate, name::AvailableDataRateClass},
                                                                 {&secondRate, name::AvailableDataRateClass2},
                                                                 {&replayRate, name::ReplayDataRateClass},
                                                                 {&ownRate, name::DataRateClass},
                                                                 {&channelName, name::ChannelName},
                                                                 {&format, name::DataFormat},
                                                                 {&errorCode, name::ErrorCode},
                                                                 {&session, name::RecordingSession},
                                                                 {&registration, name::PelinRegistrationMode}})
        create(*value, valueName);
    offer(recordingMode, name::AllRecordReplayModes, Admin::GetRecordReplayAllModess());
    offer(replayMode, name::ReplayMode, Admin::GetGUIReplayModes());
    offer(mode, name::RecordReplayModes, Admin::GetGUIRecordReplayModes());
    create(recordFlag, name::RecordFlag);
    create(replayFlag, name::ReplayFlag);
    create(triggered, name::TriggeredByCorbaCall);
    create(sizeInKb, name::FileSizeInKB);
    create(replays, name::NoOfReplays);
    create(timeout, name::RecordTimeout);
    create(duration, name::Duration);
    create(counterStart, name::RecordCounterStartTime);
    create(sampleRate, name::RequestedSampleRate);
    create(sampleBytes, name::RequestedSampleSize);
    measure(position, name::CurrentReplayPosition);
    measure(begin, name::ReplayBegin);
    measure(end, name::ReplayEnd);
    measure(startPosition, name::StartPosition);
    measure(stopPosition, name::StopPosition);
}

void ChannelPublisher::Values::set(const Channel &channel)
{
    setSettings(channel.settings);
    if (!channel.run.isIdle())
        setRun(channel);
    // The modes come last: whoever waits for one finds the rest.
    select(recordingMode, recordingModeOf(channel.run));
    select(replayMode, replayModeOf(channel.run));
    select(mode, modeOf(channel.run));
}

void ChannelPublisher::Values::setSettings(const ChannelSettings &settings)
{
    const QString own = textOf(settings.rate);
    installation::set(channelName, settings.name);
    installation::set(allowedDevices, settings.devices().join(u','));
    installation::set(rate, own);
    installation::set(secondRate, textOf(settings.additionalRate.value_or(settings.rate)));
    installation::set(replayRate, own);
    installation::set(ownRate, own);
    installation::set(format, textOf(settings.format));
    installation::set(registration, registrationOf(settings));
    installation::set(recordFlag, settings.record);
    installation::set(replayFlag, settings.replay);
    installation::set(sampleRate, static_cast<qint64>(settings.sampleRate));
    installation::set(sampleBytes, static_cast<int>(settings.sampleBytes));
}

void ChannelPublisher::Values::setRun(const Channel &channel)
{
    const ChannelRun &run = channel.run;
    const ChannelProgress &progress = channel.progress;
    installation::set(deviceId, run.deviceId);
    installation::set(recordId, run.recordId);
    installation::set(recordName, run.recordName);
    installation::set(triggered, true); // nobody else starts a run
    installation::set(sizeInKb, cutToInt(progress.sizeBytes / 1024));
    if (run.isRecording()) {
        installation::set(session, run.recordId);
        installation::set(timeout, cutToInt(run.durationS));
        installation::set(counterStart, static_cast<qint64>(run.startedUs));
        installation::set(duration, lengthUs(progress));
        return;
    }
    installation::set(replays, cutToInt(run.count));
    installation::set(startPosition, static_cast<double>(run.begin));
    installation::set(stopPosition, static_cast<double>(run.end));
    installation::set(begin, timeAtUs(progress, run.begin));
    installation::set(end, timeAtUs(progress, run.end));
    installation::set(position, timeAtUs(progress, progress.position));
}

ChannelPublisher::ChannelPublisher() : alive(std::make_shared<ChannelPublisher *>(this))
{
    Text error;
    error.getOrCreate(commandErrorPath());
}

ChannelPublisher::~ChannelPublisher()
{
    removeOthers({});
    values::Tree::Instance().removeValue(commandErrorPath());
}

void ChannelPublisher::publish(const ChannelList &channels, const CommandError &last)
{
    removeOthers(channels);
    QString failed; // the channel that the last error belongs to
    for (const Channel &channel : channels) {
        std::unique_ptr<Values> &values = shown[channel.id];
        if (!values)
            values = std::make_unique<Values>(pathOf(channel.id));
        values->set(channel);
        if (channel.error.number == last.number)
            failed = pathOf(channel.id) + name::ErrorCode;
    }
    if (last.number <= lastError)
        return;
    lastError = last.number;
    ErrorDescriptor answers;
    const QString text = answers.ConstructErrorString(ErrorDescriptor::Error, QString::number(last.code), last.text);
    answers.WriteCommandResponseInternal(text, commandErrorPath(), failed);
}

ChannelDirectory::Listener ChannelPublisher::listener()
{
    const auto mainThread = ThreadingHelper::ThreadSwitchingAdministration::CreateThreadSwitchingHandler(
        QStringLiteral("installation/manager/channelpublisher"));
    const std::weak_ptr<ChannelPublisher *> weak = alive;
    return [mainThread, weak](const ChannelList &channels, const CommandError &last) {
        mainThread->post(ThreadingHelper::RunInMainThreadEvent([weak, channels, last] {
            if (const auto publisher = weak.lock())
                (*publisher)->publish(channels, last);
        }));
    };
}

void ChannelPublisher::removeOthers(const ChannelList &channels)
{
    std::erase_if(shown, [&](const auto &entry) {
        const bool isThere = std::any_of(channels.begin(), channels.end(),
                                         [&](const Channel &channel) { return channel.id == entry.first; });
        if (!isThere)
            values::Tree::Instance().removeNode(korve::path::channel + u'/' + entry.first);
        return !isThere;
    });
}

} // namespace installation
