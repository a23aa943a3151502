#include "installation/recorder/replaysender.h"

#include "coresupport/trace.h"

#include <poll.h>

#include <algorithm>

namespace installation::recorder
{

namespace
{

constexpr const char *sourceName = "installation/recorder/replaysender";

} // namespace

ReplaySender::ReplaySender(std::unique_ptr<ReplaySource> samples, Listener listener, Now now)
    : source(std::move(samples)), listener(std::move(listener)), now(std::move(now)),
      place(source->sizeBytes(), source->sampleBytes())
{
    begin([this] { run(); });
}

void ReplaySender::askToEnd()
{
    {
        const std::scoped_lock lock(mutex);
        ending = true;
    }
    wakeup.wake();
}

ReplaySender::Link ReplaySender::connectTo(const SampleLink::Address &peer, quint32 samplesPerSecond)
{
    requireNoLink();
    checkedRate(samplesPerSecond);
    return install(SampleLink::connectTo(peer, connectLimit), samplesPerSecond);
}

ReplaySender::Link ReplaySender::listenOn(const SampleLink::Address &own, quint32 samplesPerSecond)
{
    requireNoLink();
    checkedRate(samplesPerSecond);
    return install(SampleLink::listenOn(own), samplesPerSecond);
}

void ReplaySender::requireNoLink() const
{
    const std::scoped_lock lock(mutex);
    if (link)
        throw LinkError(LLDCmodule::ekWrongSequence, QStringLiteral("the session has a link already"));
}

double ReplaySender::checkedRate(quint32 samplesPerSecond) const
{
    const double rate = samplesPerSecond == ownRate ? double(source->sampleRateHz()) : double(samplesPerSecond);
    if (rate == 0)
        throw LinkError(LLDCmodule::ekDataRateUnavailable, QStringLiteral("the record has no sample rate of its own"));
    return rate;
}

ReplaySender::Link ReplaySender::install(SampleLink opened, quint32 samplesPerSecond)
{
    const std::scoped_lock lock(mutex);
    if (link)
        throw LinkError(LLDCmodule::ekWrongSequence, QStringLiteral("the session has a link already"));
    link = std::make_shared<SampleLink>(std::move(opened));
    ++linkId;
    failure.reset();
    pacer.reset();
    if (samplesPerSecond != fullSpeed)
        pacer.emplace(checkedRate(samplesPerSecond), source->sampleBytes(), now());
    return {linkId, link->address()};
}

void ReplaySender::requireLink(quint32 wanted) const
{
    if (wanted != linkId || wanted == 0)
        throw LinkError(LLDCmodule::ekWrongSequence, QStringLiteral("there is no link %1").arg(wanted));
    if (failure)
        throw LinkError(*failure);
    if (!link)
        throw LinkError(LLDCmodule::ekWrongSequence, QStringLiteral("link %1 has ended").arg(wanted));
}

void ReplaySender::start(quint32 wanted)
{
    {
        const std::scoped_lock lock(mutex);
        requireLink(wanted);
        if (playing)
            throw LinkError(LLDCmodule::ekWrongSequence, QStringLiteral("the samples are on their way already"));
        if (pacer)
            pacer->restart(now());
        setPlaying(true);
    }
    wakeup.wake();
}

void ReplaySender::pause(quint32 wanted)
{
    std::unique_lock lock(mutex);
    requireLink(wanted);
    if (!playing)
        throw LinkError(LLDCmodule::ekWrongSequence, QStringLiteral("no samples are on their way"));
    setPlaying(false);
    landed.wait(lock, [this] { return !place.isUnderWay(); });
}

void ReplaySender::disconnect(quint32 wanted)
{
    {
        std::unique_lock lock(mutex);
        if (wanted != linkId || wanted == 0 || !(link || failure))
            throw LinkError(LLDCmodule::ekDisconnectFailed, QStringLiteral("there is no link %1").arg(wanted));
        setPlaying(false);
        landed.wait(lock, [this] { return !place.isUnderWay(); });
        endLink();
        failure.reset();
    }
    wakeup.wake();
}

void ReplaySender::endLink()
{
    link.reset();
    place.dropBegun();
}

void ReplaySender::setPlaying(bool now)
{
    if (playing != now)
        listener.changed(now);
    playing = now;
}

void ReplaySender::change(const std::function<void(ReplaySection &)> &edit)
{
    {
        const std::scoped_lock lock(mutex);
        edit(place);
    }
    wakeup.wake();
}

void ReplaySender::swapBytes(bool wanted)
{
    const std::scoped_lock lock(mutex);
    swapped = wanted;
}

ReplaySection ReplaySender::section() const
{
    const std::scoped_lock lock(mutex);
    return place;
}

std::optional<SampleLink::Address> ReplaySender::linkInUse() const
{
    const std::scoped_lock lock(mutex);
    return link ? std::optional(link->address()) : std::nullopt;
}

void ReplaySender::run()
{
    for (Pause pause; step(pause); pause = {})
        wait(pause);
}

/// Does what can be done without waiting, and tells what to wait for. False at the end.
bool ReplaySender::step(Pause &pause)
{
    wakeup.clear();
    std::unique_lock lock(mutex);
    if (ending)
        return false;
    pause.link = playing ? link : nullptr;
    if (!pause.link)
        return true;
    if (!hasPeer(pause))
        return true;
    if (place.left() == 0 && !place.beginNextPass()) {
        lock.unlock();
        return finish();
    }
    if (const quint64 bytes = dueBytes(pause))
        deliver(lock, bytes, pause);
    return true;
}

/// False while nobody has come.
bool ReplaySender::hasPeer(Pause &pause)
{
    if (link->hasPeer())
        return true;
    try {
        if (link->tryAccept())
            return true;
        pause.events = POLLIN;
    } catch (const LinkError &error) {
        pause.link.reset();
        fail(error);
    }
    return false;
}

bool ReplaySender::finish()
{
    {
        const std::scoped_lock lock(mutex);
        if (link)
            link->finish();
        link.reset();
    }
    listener.ended();
    return false;
}

/// 0, and how long that stays so, when the next piece is not due yet.
quint64 ReplaySender::dueBytes(Pause &pause)
{
    if (!pacer)
        return place.left();
    const Pacer::Clock::time_point time = now();
    const quint64 due = pacer->due(time);
    if (due == 0)
        pause.limit = std::max(pacer->nextPiece() - time, Pacer::Clock::duration(0));
    return std::min(due, place.left());
}

void ReplaySender::deliver(std::unique_lock<std::mutex> &lock, quint64 bytes, Pause &pause)
{
    const quint64 position = place.position();
    const bool swappedNow = swapped;
    qint64 count = 0;
    std::optional<LinkError> error;
    place.depart();
    lock.unlock();
    try {
        count = source->deliver(*pause.link, position, bytes, swappedNow);
    } catch (const LinkError &e) {
        error = e;
    } catch (const std::exception &e) { // of the file, or of the process: the link is no use without samples
        error.emplace(LLDCmodule::ekDataStreamUnavailable, QString::fromUtf8(e.what()));
    }
    lock.lock();
    place.advance(static_cast<quint64>(count));
    landed.notify_all();
    if (error) {
        pause.link.reset(); // nothing holds the socket open
        return fail(*error);
    }
    if (pacer)
        pacer->sent(static_cast<quint64>(count));
    if (count == 0)
        pause.events = POLLOUT;
    else
        pause.limit = std::chrono::nanoseconds(0); // on, without a wait
}

void ReplaySender::fail(const LinkError &error)
{
    traceAt(TraceLevel::Normal, sourceName, [&] { return error.text(); });
    failure = error;
    endLink();
    setPlaying(false);
}

void ReplaySender::wait(const Pause &pause)
{
    if (pause.limit && pause.limit->count() == 0)
        return;
    SampleLink::await(pause.link.get(), pause.events, wakeup, pause.limit);
}

} // namespace installation::recorder
