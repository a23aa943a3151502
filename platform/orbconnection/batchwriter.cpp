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
        flush();
    if (batch.empty())
        appendHeader(batch, sequence);
    appendRecord(batch, record);
    if (batch.size() >= timing.batchBytes)
        flush();
    return true;
}

void BatchWriter::flush()
{
    flushWanted = false;
    if (batch.empty())
        return;
    std::string complete;
    complete.swap(batch);
    outlet.put(sequence++, std::move(complete));
}

void BatchWriter::wantFlush()
{
    if (!std::exchange(flushWanted, true))
        outlet.wantsFlush();
}

void BatchWriter::restart()
{
    batch.clear();
    sequence = 1;
}
} // namespace mirror
