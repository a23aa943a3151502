#include "installation/recorder/recordingreceiver.h"

#include "installation/contracts/endedrecording.h"
#include "installation/recorder/looporder.h"
#include "installation/recorder/recordererror.h"

#include "coresupport/trace.h"

#include <poll.h>

#include <utility>

namespace installation::recorder
{

namespace
{

constexpr const char *sourceName = "installation/recorder/recordingreceiver";
constexpr int bufferBytes = 1 << 18;
constexpr int lastPieces = 64; ///< of a source that never pauses
constexpr quint64 metaDataBytes = 1 << 20; ///< more than the meta data of a recording takes

using Clock = std::chrono::steady_clock;

} // namespace

RecordingReceiver::RecordingReceiver(std::unique_ptr<RecordingWriter> writer, RecordingBook book,
                                     std::function<quint64()> clockUs, Listener listener,
                                     std::chrono::milliseconds linkLimit)
    : writer(std::move(writer)), book(std::move(book)), clockUs(std::move(clockUs)), listener(std::move(listener)),
      linkLimit(linkLimit), buffer(bufferBytes, Qt::Uninitialized)
{
    begin([this] { run(); });
}

void RecordingReceiver::askToEnd()
{
    {
        const std::scoped_lock lock(mutex);
        ending = true;
    }
    wakeup.wake();
}

void RecordingReceiver::end(const QString &lastComment, std::chrono::milliseconds limit)
{
    bool isLate = false;
    {
        std::unique_lock lock(mutex);
        isLate = commentsTaken;
        if (!isLate && !lastComment.isEmpty())
            comments.append(lastComment);
        ending = true;
        wakeup.wake();
        changed.wait_for(lock, limit, [this] { return complete; });
        if (notClosed)
            throw *notClosed;
    }
    if (isLate && !lastComment.isEmpty())
        book.remark({clockUs(), lastComment});
}

quint32 RecordingReceiver::connectTo(const SampleLink::Address &address, const Source &from)
{
    requireNoLink();
    SampleLink opened = SampleLink::connectTo(address, connectLimit);
    if (address.kind == LLDCmodule::ifUDP)
        opened.trySend("\0", 1);
    return install(std::move(opened), from);
}

quint16 RecordingReceiver::listenOn(const SampleLink::Address &own, const Source &from)
{
    requireNoLink();
    SampleLink opened = SampleLink::listenOn(own);
    const quint16 port = opened.address().port;
    install(std::move(opened), from);
    return port;
}

void RecordingReceiver::requireNoLink() const
{
    const std::scoped_lock lock(mutex);
    if (link || ending)
        throw LinkError(LLDCmodule::ekWrongSequence, QStringLiteral("the session has a link already, or is about to end"));
}

quint32 RecordingReceiver::install(SampleLink opened, const Source &from)
{
    const std::scoped_lock lock(mutex);
    if (link || ending)
        throw LinkError(LLDCmodule::ekWrongSequence, QStringLiteral("the session has a link already, or is about to end"));
    link = std::make_shared<SampleLink>(std::move(opened));
    source = from;
    wakeup.wake();
    return ++linkId;
}

void RecordingReceiver::disconnect(quint32 wanted)
{
    const std::scoped_lock lock(mutex);
    if (!link || wanted != linkId)
        throw LinkError(LLDCmodule::ekDisconnectFailed, QStringLiteral("there is no link %1").arg(wanted));
    link.reset();
    wakeup.wake();
}

void RecordingReceiver::swapBytes(bool wanted)
{
    const std::scoped_lock lock(mutex);
    swapped = wanted;
}

std::optional<SampleLink::Address> RecordingReceiver::linkInUse() const
{
    const std::scoped_lock lock(mutex);
    return link ? std::optional(link->address()) : std::nullopt;
}

void RecordingReceiver::run()
{
    try {
        while (receive()) {
            // until the end of the stream, or of the session
        }
    } catch (const std::exception &error) { // of the link, the disk, or the process: what came before is good
        trouble = QString::fromUtf8(error.what());
    }
    close();
    listener.ended();
    const std::scoped_lock lock(mutex);
    complete = true;
    link.reset();
    changed.notify_all();
}

/// Takes what has come, or waits for it. False at the end.
bool RecordingReceiver::receive()
{
    wakeup.clear();
    std::shared_ptr<SampleLink> current;
    bool isLast = false;
    {
        const std::scoped_lock lock(mutex);
        isLast = ending;
        current = link;
        if (current && std::exchange(linkTaken, linkId) != linkId) {
            newSource = source;
            writer->dropBegun(); // what the link before it has left of a sample
        }
    }
    const bool goesOn = !current || (!current->hasPeer() && !current->tryAccept()) || take(*current, isLast);
    if (isLast || !goesOn || isForgotten(current.get()))
        return false;
    if (writer->end() != syncedEnd && Clock::now() >= nextSync)
        sync();
    wait(current);
    return true;
}

/// A manager that ends while it begins a recording does not know of it afterwards, and nobody else does.
bool RecordingReceiver::isForgotten(const SampleLink *current)
{
    if (current)
        linkWantedBy.reset();
    else if (!linkWantedBy)
        linkWantedBy = Clock::now() + linkLimit;
    return linkWantedBy && Clock::now() >= *linkWantedBy;
}

SampleLink::Wait RecordingReceiver::wait(const std::shared_ptr<SampleLink> &current) const
{
    std::optional<std::chrono::nanoseconds> limit;
    if (writer->end() != syncedEnd)
        limit = nextSync - Clock::now();
    else if (linkWantedBy)
        limit = *linkWantedBy - Clock::now();
    return SampleLink::await(current.get(), POLLIN, wakeup, limit);
}

/// Takes one piece, or for the last time much of what has come by now. False at the end of the stream.
bool RecordingReceiver::take(SampleLink &from, bool isLast)
{
    for (int pieces = isLast ? lastPieces : 1; pieces > 0; --pieces) {
        const std::optional<qint64> count = from.tryReceive(buffer.data(), buffer.size());
        if (!count)
            return false;
        if (*count == 0)
            break;
        store(*count);
    }
    return true;
}

void RecordingReceiver::store(qint64 count)
{
    if (settings.isEmpty()) {
        nextSync = Clock::now() + syncInterval;
        listener.reached(Stage::Recording);
    }
    if (const std::optional<Source> from = std::exchange(newSource, std::nullopt))
        noteSetting(*from);
    bool swappedNow = false;
    {
        const std::scoped_lock lock(mutex);
        swappedNow = swapped;
    }
    writer->write(buffer.constData(), count, swappedNow);
}

/// Of a link whose first sample comes. One before it of which no sample is whole never was.
void RecordingReceiver::noteSetting(const Source &from)
{
    if (!settings.isEmpty() && settings.last().offsetBytes == writer->end())
        settings.removeLast();
    settings.append({writer->end(), clockUs(), from.tunerFrequencyHz, from.sampleRateHz, 0});
}

RecordingProgress RecordingReceiver::progress()
{
    while (settings.size() > 1 && settings.at(1).offsetBytes <= writer->begin())
        settings.removeFirst();
    while (settings.size() > 1 && settings.last().offsetBytes >= writer->end()) // its samples were cut off
        settings.removeLast();
    return {writer->begin(), writer->end(), clockUs(), settings};
}

/// What a loop gives back must not be what the stored record still counts on, so that comes last.
void RecordingReceiver::sync()
{
    const RecordingProgress reached = progress();
    nextSync = Clock::now() + syncInterval;
    writer->sync();
    try {
        book.note(reached);
    } catch (const RecorderError &error) {
        if (error.kind() != TQ_KORVE::ekMASS_STORAGE_TOO_SLOW && error.kind() != TQ_KORVE::ekRESSOURCES_EXHAUSTED)
            throw;
        return; // the store is busy; the next time will do
    }
    writer->release(reached.begin);
    syncedEnd = reached.end;
}

void RecordingReceiver::close()
{
    listener.reached(Stage::Closing);
    QStringList remarks;
    {
        const std::scoped_lock lock(mutex);
        remarks = comments;
        commentsTaken = true;
    }
    if (!trouble.isEmpty())
        remarks.append(QLatin1String(endedByItself) + trouble);
    try {
        closeWith(remarks);
    } catch (const RecorderError &error) { // the next start of the recorder closes what is stored
        traceAt(TraceLevel::Normal, sourceName, [&] { return error.text(); });
        const std::scoped_lock lock(mutex);
        notClosed = error;
    }
}

void RecordingReceiver::closeWith(const QStringList &remarks)
{
    try {
        writer->cut();
        writer->sync();
        book.close(progress(), remarks);
    } catch (const RecorderError &error) {
        if (error.kind() != TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE)
            throw;
        // Some samples for the meta data without which all were lost, and for a loop to move.
        writer->giveUp(metaDataBytes + (writer->begin() > 0 ? moveRoomBytes : 0));
        writer->sync();
        book.close(progress(), remarks);
    }
}

} // namespace installation::recorder
