#pragma once

#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordingbook.h"
#include "installation/recorder/recordingwriter.h"
#include "installation/recorder/samplelink.h"
#include "installation/recorder/sessionthread.h"
#include "installation/recorder/wakeup.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace installation::recorder
{

/// Records what comes over one link, on a thread of its own.
///
/// The recording ends with the stream, by end(), when its link fails or when the disk is full; it keeps what came before,
/// and its history tells what was the matter. What came is on the disk after a second at the latest.
/// Thread: any.  Errors: LinkError for what concerns the link.
class RecordingReceiver : public SessionThread
{
public:
    enum class Stage { Recording, Closing };
    struct Listener {
        std::function<void(Stage)> reached; ///< on the thread of the receiver
        std::function<void()> ended;        ///< by itself or by end(), when the record is complete; on the same thread
    };
    struct Source {
        quint64 tunerFrequencyHz = 0;
        quint64 sampleRateHz = 0; ///< 0: that of the data-rate class
    };

    static constexpr std::chrono::milliseconds connectLimit{2000};
    static constexpr std::chrono::milliseconds syncInterval{500};
    static constexpr std::chrono::milliseconds usualLinkLimit{60'000};

    /// Ends by itself when there is no link for @p linkLimit, since then whoever wanted to record has gone.
    RecordingReceiver(std::unique_ptr<RecordingWriter> writer, RecordingBook book, std::function<quint64()> clockUs,
                      Listener listener, std::chrono::milliseconds linkLimit = usualLinkLimit);
    ~RecordingReceiver() override { stop(); }
    RecordingReceiver(const RecordingReceiver &) = delete;

    /// Connects to the source and returns the number of the link. By UDP an empty-handed datagram tells it where we are.
    quint32 connectTo(const SampleLink::Address &address, const Source &source);
    /// Waits for the source to connect, or to send; returns the port.
    quint16 listenOn(const SampleLink::Address &own, const Source &source);
    void disconnect(quint32 linkId);
    void swapBytes(bool wanted);
    /// Ends the recording with this comment, if it is one, also when it is ending already; waits for the record to be
    /// complete, but no longer than @p limit.
    /// @throws RecorderError when it could not be completed, or the comment not be kept.
    void end(const QString &comment, std::chrono::milliseconds limit);
    std::optional<SampleLink::Address> linkInUse() const;

private:
    void askToEnd() override;
    void run();
    bool receive();
    bool isForgotten(const SampleLink *current);
    SampleLink::Wait wait(const std::shared_ptr<SampleLink> &current) const;
    bool take(SampleLink &from, bool isLast);
    void store(qint64 count);
    void sync();
    void close();
    void closeWith(const QStringList &remarks);
    RecordingProgress progress();
    void noteSetting(const Source &from);
    quint32 install(SampleLink opened, const Source &from);
    void requireNoLink() const;

    const std::unique_ptr<RecordingWriter> writer;
    RecordingBook book;
    const std::function<quint64()> clockUs;
    const Listener listener;
    const std::chrono::milliseconds linkLimit;
    Wakeup wakeup;
    QByteArray buffer;                                 // this and the seven below are the thread's alone
    quint32 linkTaken = 0;                             ///< from which link samples were taken last
    QVector<IndexEntry> settings;                      ///< as RecordingProgress has them
    std::optional<Source> newSource;                   ///< of a link from which nothing has come
    quint64 syncedEnd = 0;
    std::chrono::steady_clock::time_point nextSync;
    QString trouble;
    std::optional<std::chrono::steady_clock::time_point> linkWantedBy; ///< while there is none
    mutable std::mutex mutex; // guards the rest
    std::condition_variable changed;
    std::shared_ptr<SampleLink> link;
    quint32 linkId = 0;
    Source source;
    QStringList comments;
    bool commentsTaken = false;
    std::optional<RecorderError> notClosed;
    bool swapped = false;
    bool ending = false;
    bool complete = false;
};

} // namespace installation::recorder
