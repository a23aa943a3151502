#pragma once

#include "apps/korvectl/outcome.h"
#include "apps/korvectl/recordscale.h"

#include "idl/korvemanager.hh"
#include "objectmodel/korve_recorddata.h"

#include <functional>
#include <memory>

namespace KorveGUI
{
class KorveGuiToServerCorbaHandler;
}

namespace korvectl
{

/// A channel that is a network endpoint by itself.
struct ChannelWish {
    QString device;
    KORVE_XML::KORVE_RecordData::DataRate rate;
    KORVE_XML::KORVE_RecordData::DataFormat format;
    bool isForRecording = false; ///< else for replay
    Endpoint endpoint;
    bool isUdp = false;

    /// By which the channels of this program are told from others.
    QString name() const;
};

/// What is to be replayed on a channel.
struct ReplayPart {
    QString device;
    QString record;
    KORVE_XML::KORVE_RecordData::DataRate rate;
    ByteRange range;
    unsigned long count = 1; ///< 0: again and again
};

/// What the names of this program's channels begin with.
bool isNameOfOurs(const QString &channelName);

/// One channel of a manager, to be registered or found by its id.
///
/// Thread: main; blocks.  Errors: answered; nothing is asked twice.
class ChannelCalls
{
public:
    /// Shares @p handler, which is connected.
    explicit ChannelCalls(const std::shared_ptr<KorveGUI::KorveGuiToServerCorbaHandler> &handler);

    Answer add(const ChannelWish &wish);
    Answer find(const QString &id);
    /// Empty before one of these has succeeded.
    const QString &id() const { return channelId; }

    /// In samples of @p sampleBytes per second; 0xFFFFFFFF: as fast as the link takes it.
    Answer setSampleRate(quint64 rate, quint64 sampleBytes);
    /// What becomes of it is shown with the channel only: a start that fails is answered like one that succeeds.
    Answer startReplaying(const ReplayPart &part);
    /// Lets no further replay begin on it. False when it refuses that, since it replays; any other failure is traced.
    bool disableReplays();
    Answer startRecording(const RecordingOptions &options, const QString &name);
    Answer stopRecording(const QString &comment);
    /// One that is busy stays.
    Answer remove();

private:
    Answer call(const char *operation, const std::function<void(TQ_KRV::IF_KRV_c_Chan_ptr)> &request);
    template <typename Request> Answer answerOf(const char *operation, const Request &request) const;

    const std::shared_ptr<KorveGUI::KorveGuiToServerCorbaHandler> handler;
    TQ_KRV::IF_KRV_c_Chan_var channel;
    QString channelId;
};

} // namespace korvectl
