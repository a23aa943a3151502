#include "orbconnection/batchwriter.h"

#include "coresupport/trace.h"

namespace mirror
{
namespace
{
constexpr char sourceName[] = "orbconnection/batchwriter";

/// No record of this content is longer.
std::size_t mostBytes(const Record &record)
{
    constexpr std::size_t numbers = 32;
    return numbers + record.path.size() + record.typeName.size() + record.frames.size();
}
} // namespace

void BatchWriter::write(const Record &record)
{
    const std::size_t most = mostBytes(record);
    if (batchHeaderBytes + most > maximumBytes) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("%1 bytes of \"%2\" are too many for a batch")
                .arg(QString::number(most), textOf(record.path));
        });
        return;
    }
    if (batch.size() + most > maximumBytes)
        flush();
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
