#include "orbconnection/batchwriter.h"

namespace mirror
{
namespace
{
/// No record of this content is longer.
std::size_t mostBytes(const Record &record)
{
    constexpr std::size_t numbers = 32;
    return numbers + record.path.size() + record.typeName.size() + record.frames.size();
}
} // namespace

bool BatchWriter::write(const Record &record)
{
    const std::size_t most = mostBytes(record);
    if (batchHeaderBytes + most > timing.maximumBatchBytes)
        return false;
    if (batch.size() + most > timing.maximumBatchBytes)
        complete();
    if (batch.empty())
        appendHeader(batch, sequence);
    appendRecord(batch, record);
    if (batch.size() >= timing.batchBytes)
        complete();
    return true;
}

bool BatchWriter::flush()
{
    flushWanted = false;
    if (outlet.waiting() < timing.windowBytes)
        complete();
    return batch.empty();
}

void BatchWriter::complete()
{
    if (batch.empty())
        return;
    std::string whole;
    whole.swap(batch);
    outlet.put(sequence++, std::move(whole));
}

void BatchWriter::wantFlush()
{
    if (!std::exchange(flushWanted, true))
        outlet.wantsFlush();
}

void BatchWriter::restart()
{
    drop();
    sequence = 1;
}
} // namespace mirror
