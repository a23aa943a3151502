#pragma once

#include "installation/recorder/pacer.h"
#include "installation/recorder/replaysection.h"
#include "installation/recorder/replaysource.h"
#include "installation/recorder/samplelink.h"
#include "installation/recorder/sessionthread.h"
#include "installation/recorder/wakeup.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace installation::recorder
{

/// Plays one record over one link, on a thread of its own.
///
/// The link comes first, then start() and pause() in turn, until the last pass is done or somebody ends it. A link that
/// fails pauses; what it failed of is told to whoever wants to start again, and a new link goes on from there, with a
/// whole sample.
/// Thread: any.  Errors: LinkError for what concerns the link, RecorderError for the rest.
class ReplaySender : public SessionThread
{
public:
    struct Listener {
        std::function<void(bool playing)> changed; ///< is told in order; must not wait
        std::function<void()> ended;               ///< by itself; on the thread of the sender, at its end
    };
    struct Link {
        quint32 id = 0;
        SampleLink::Address address;
    };

    static constexpr quint32 ownRate = 0;
    static constexpr quint32 fullSpeed = 0xffffffff;
    static constexpr std::chrono::milliseconds connectLimit{2000};

    using Now = std::function<Pacer::Clock::time_point()>;

    /// @p now is the clock of the pace.
    ReplaySender(std::unique_ptr<ReplaySource> source, Listener listener, Now now = Pacer::Clock::now);
    ~ReplaySender() override { stop(); }
    ReplaySender(const ReplaySender &) = delete;

    Link connectTo(const SampleLink::Address &peer, quint32 samplesPerSecond);
    Link listenOn(const SampleLink::Address &own, quint32 samplesPerSecond);
    void start(quint32 linkId);
    /// When it returns nothing goes any more.
    void pause(quint32 linkId);
    void disconnect(quint32 linkId);
    /// Hands the section to @p edit, which may throw.
    void change(const std::function<void(ReplaySection &)> &edit);
    void swapBytes(bool wanted);

    ReplaySection section() const;
    std::optional<SampleLink::Address> linkInUse() const;
    const ReplaySource &samples() const { return *source; }

private:
    void askToEnd() override;
    struct Pause {
        std::shared_ptr<SampleLink> link; ///< none: only a command goes on
        short events = 0;
        std::optional<std::chrono::nanoseconds> limit;
    };

    void run();
    bool step(Pause &pause);
    bool hasPeer(Pause &pause);
    bool finish();
    quint64 dueBytes(Pause &pause);
    void deliver(std::unique_lock<std::mutex> &lock, quint64 bytes, Pause &pause);
    void fail(const LinkError &error);
    void endLink();
    void wait(const Pause &pause);
    Link install(SampleLink opened, quint32 samplesPerSecond);
    double checkedRate(quint32 samplesPerSecond) const;
    void requireNoLink() const;
    void requireLink(quint32 linkId) const;
    void setPlaying(bool now);

    const std::unique_ptr<ReplaySource> source;
    const Listener listener;
    const Now now;
    Wakeup wakeup;
    mutable std::mutex mutex; // guards the rest; not held while samples go out
    std::condition_variable landed;
    ReplaySection place;
    std::shared_ptr<SampleLink> link;
    quint32 linkId = 0;
    std::optional<Pacer> pacer; ///< none at full speed
    std::optional<LinkError> failure;
    bool swapped = false;
    bool playing = false;
    bool ending = false;
};

} // namespace installation::recorder
