#pragma once

#include "orbconnection/mirrortiming.h"
#include "orbconnection/mirrorwire.h"

#include <functional>

namespace mirror
{
/// Where a mirror's batches go: to whoever carries them to the peer.
struct Outlet {
    /// Takes a batch that is complete.
    std::function<void(quint64 sequence, std::string bytes)> put;
    /// The bytes that wait for the peer.
    std::function<std::size_t()> waiting;
    /// There is something to write: a flush is to come soon. Called once until then.
    std::function<void()> wantsFlush;
};

/// Gathers records into numbered batches.
class BatchWriter
{
public:
    BatchWriter(const MirrorTiming &timing, const Outlet &outlet) : timing(timing), outlet(outlet) {}

    /// False, with nothing written, when @p record is too large for a batch.
    bool write(const Record &record);
    /// Completes the batch that is being gathered, if there is one.
    void complete();
    /// Completes the batch if there is room for it; it grows while the peer has enough to do. False: it waits for room.
    bool flush();
    /// Asks for a flush, unless one has been asked for since the last.
    void wantFlush();

    /// Whether what may be merged is to be written now, or rather later.
    bool hasRoom() const { return waiting() < timing.windowBytes; }
    /// Whether what can't be merged may still be written.
    bool hasRoomForEvents() const { return waiting() < timing.queueBytes; }

    /// Drops what is gathered.
    void drop() { batch.clear(); }
    /// Drops what is gathered, and counts from 1 again.
    void restart();

private:
    std::size_t waiting() const { return outlet.waiting() + batch.size(); }

    const MirrorTiming timing;
    const Outlet outlet;
    std::string batch;
    quint64 sequence = 1;
    bool flushWanted = false;
};
} // namespace mirror
