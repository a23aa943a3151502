#pragma once

#include "orbconnection/mirrortiming.h"
#include "orbconnection/mirrorwire.h"

#include <functional>

namespace mirror
{
/// Gathers records into numbered batches.
class BatchWriter
{
public:
    /// Takes a batch that is complete.
    using Sink = std::function<void(quint64 sequence, std::string bytes, bool isSnapshot)>;

    BatchWriter(const MirrorTiming &timing, Sink sink)
        : batchBytes(timing.batchBytes), maximumBytes(timing.maximumBatchBytes), sink(std::move(sink))
    {
    }

    /// A record that is too large for a batch is traced and left out.
    void write(const Record &record);
    /// Completes the batch that is being gathered, if there is one.
    void flush();
    /// Numbers what the other side sent, see BatchHeader::applied. Flush first.
    void setApplied(quint64 sequence) { applied = sequence; }
    /// What is completed until the call with false belongs to a snapshot.
    void setSnapshot(bool on);

    /// Drops what is gathered and counts from 1 again.
    void restart();

    bool isEmpty() const { return batch.empty(); }
    /// The number of the batch that the last record went to.
    quint64 lastSequence() const { return batch.empty() ? sequence - 1 : sequence; }

private:
    const std::size_t batchBytes;
    const std::size_t maximumBytes;
    const Sink sink;
    std::string batch;
    quint64 sequence = 1;
    quint64 applied = 0;
    bool isSnapshot = false;
};
} // namespace mirror
