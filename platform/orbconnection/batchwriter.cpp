#include "orbconnection/batchwriter.h"

namespace mirror
{
void BatchWriter::write(const Record &record)
{
    if (batch.empty())
        appendHeader(batch, {sequence, applied});
    appendRecord(batch, record);
    if (batch.size() >= batchBytes)
        flush();
}

void BatchWriter::flush()
{
    if (batch.empty())
        return;
    std::string complete;
    complete.swap(batch);
    sink(sequence++, std::move(complete), isSnapshot);
}

void BatchWriter::restart()
{
    batch.clear();
    sequence = 1;
    applied = 0;
}

void BatchWriter::setSnapshot(bool on)
{
    flush();
    isSnapshot = on;
}
} // namespace mirror
