#include "apps/korvectl/channelstates.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/mirroredpart.h"
#include "apps/korvectl/table.h"

#include "korvebase/errordescriptor.h"
#include "korvebase/valuenames.h"
#include "korvebase/valuetreepaths.h"
#include "objectmodel/admin.h"
#include "valuetreelib/node.h"
#include "valuetreelib/valuenumeric.h"

#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace korvectl
{

namespace
{

namespace name = korve::name;

QString textAt(const QString &path, QLatin1String valueName)
{
    const values::ValueBase *const value = values::Tree::Instance().findValue(path + valueName);
    return value ? value->GetStringValue() : QString();
}

/// 0, or false, for a value that is not there.
template <typename Content> Content contentAt(const QString &path, QLatin1String valueName)
{
    const auto *const value =
        dynamic_cast<const values::Value<Content> *>(values::Tree::Instance().findValue(path + valueName));
    return value ? value->GetValue() : Content{};
}

ChannelState channelAt(const QString &id)
{
    const QString path = korve::path::channel + u'/' + id + u'/';
    ChannelState state{id, textAt(path, name::ChannelName)};
    state.device = textAt(path, name::DeviceID);
    state.record = textAt(path, name::RecordID);
    state.recordName = textAt(path, name::RecordName);
    state.replay = textAt(path, name::ReplayMode);
    state.recording = textAt(path, name::AllRecordReplayModes);
    state.isEnabledForReplay = contentAt<bool>(path, name::ReplayFlag);
    state.beginUs = contentAt<double>(path, name::ReplayBegin);
    state.endUs = contentAt<double>(path, name::ReplayEnd);
    state.positionUs = contentAt<double>(path, name::CurrentReplayPosition);
    state.error = textAt(path, name::ErrorCode);
    return state;
}

/// What it does, in a word or two.
QString wordsFor(const ChannelState &state)
{
    if (state.isRecording())
        return state.recording;
    return state.replay.mid(state.replay.lastIndexOf(u' ') + 1).toLower();
}

QString percent(const ChannelState &state)
{
    const auto progress = state.progress();
    return progress ? QStringLiteral("%1 %").arg(*progress * 100, 0, 'f', 1) : QString();
}

QString errorOf(const ChannelState &state)
{
    return state.errorNumber() == 0 ? QString()
                                    : QStringLiteral("%1 %2").arg(QString::number(state.errorNumber()), state.errorText());
}

QJsonObject objectOf(const ChannelState &state)
{
    QJsonObject object{{QStringLiteral("channel"), state.id},
                       {QStringLiteral("name"), state.name},
                       {QStringLiteral("device"), state.device},
                       {QStringLiteral("record"), state.record},
                       {QStringLiteral("recordName"), state.recordName},
                       {QStringLiteral("replay"), state.replay},
                       {QStringLiteral("recording"), state.recording},
                       {QStringLiteral("beginUs"), state.beginUs},
                       {QStringLiteral("endUs"), state.endUs},
                       {QStringLiteral("positionUs"), state.positionUs},
                       {QStringLiteral("errorNumber"), static_cast<qint64>(state.errorNumber())},
                       {QStringLiteral("error"), state.errorText()}};
    if (const auto progress = state.progress())
        object.insert(QStringLiteral("progress"), *progress);
    return object;
}

} // namespace

bool isBefore(const ChannelState &left, const ChannelState &right)
{
    return std::pair(left.id.size(), left.id) < std::pair(right.id.size(), right.id);
}

unsigned long ChannelState::errorNumber() const
{
    return error.isEmpty() ? 0 : ErrorDescriptor().GetErrorCode(error).errorCode.toULong();
}

QString ChannelState::errorText() const
{
    return error.isEmpty() ? QString() : ErrorDescriptor().GetErrorCode(error).message;
}

bool ChannelState::isReplaying() const
{
    static const QString idle = KORVE_XML::Admin::GetGUIReplayModes().constFirst();
    return !replay.isEmpty() && replay != idle;
}

bool ChannelState::isRecording() const
{
    static const QString stopped = KORVE_XML::Admin::GetRecordReplayAllModess().constLast();
    return !recording.isEmpty() && recording != stopped;
}

std::optional<double> ChannelState::progress() const
{
    if (!isReplaying() || endUs <= beginUs)
        return {};
    return std::clamp((positionUs - beginUs) / (endUs - beginUs), 0.0, 1.0);
}

QString channelsTable(const QVector<ChannelState> &channels)
{
    Table table({{QStringLiteral("CHANNEL")},
                 {.title = QStringLiteral("NAME"), .mayBeCut = true},
                 {QStringLiteral("STATE")},
                 {QStringLiteral("DEVICE")},
                 {QStringLiteral("RECORD")},
                 {QStringLiteral("DONE"), Qt::AlignRight},
                 {.title = QStringLiteral("LAST ERROR"), .mayBeCut = true}});
    for (const ChannelState &state : channels)
        table.addRow({state.id, state.name, wordsFor(state), state.device, state.record, percent(state), errorOf(state)});
    return table.text(resultWidth());
}

QString channelsJson(const QVector<ChannelState> &channels)
{
    QJsonArray array;
    for (const ChannelState &state : channels)
        array.append(objectOf(state));
    return jsonText(array);
}

ChannelStates::ChannelStates(const CentralService &service, const QString &subsystem, std::chrono::milliseconds timeout)
    : timeout(timeout)
{
    const VtConnectData server = treeServerOf(service, subsystem, Deadline(timeout));
    mirror = requireMirrored(server, korve::path::channel, timeout);
}

QVector<ChannelState> ChannelStates::channels() const
{
    QVector<ChannelState> found;
    const values::Node *const node = values::Tree::Instance().findNode(korve::path::channel);
    if (!node)
        return found;
    for (const values::TreeItem *const item : node->GetTreeItems())
        if (item->isNode())
            found << channelAt(item->GetPathName().section(u'/', -1));
    std::sort(found.begin(), found.end(), isBefore);
    return found;
}

std::optional<ChannelState> ChannelStates::waitFor(const Condition &holds) const
{
    std::optional<ChannelState> found;
    waitUntil([&] {
        const QVector<ChannelState> all = channels();
        const auto position = std::find_if(all.begin(), all.end(), holds);
        if (position != all.end())
            found = *position;
        return found.has_value();
    });
    return found;
}

void ChannelStates::waitUntil(const std::function<bool()> &holds) const
{
    constexpr std::chrono::milliseconds betweenLooks{20};
    if (holds())
        return;
    QEventLoop loop;
    QTimer looks;
    QObject::connect(&looks, &QTimer::timeout, &loop, [&] {
        if (holds())
            loop.quit();
    });
    looks.start(betweenLooks);
    QTimer::singleShot(timeout, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace korvectl
