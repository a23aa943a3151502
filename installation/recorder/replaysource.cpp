#include "installation/recorder/replaysource.h"

#include "installation/recorder/samplelink.h"
#include "installation/recorder/wordorder.h"

#include <algorithm>

namespace installation::recorder
{

namespace
{

constexpr quint64 directBytes = 1 << 20;
constexpr quint64 bufferedBytes = 1 << 17;

} // namespace

ReplaySource::ReplaySource(const Record &record, const QString &samplesPath)
    : file(File::openForReading(samplesPath)), size(record.sizeBytes), layout(sampleLayout(record)),
      rateHz(record.index.value(0).sampleRateHz)
{
}

qint64 ReplaySource::deliver(SampleLink &link, quint64 position, quint64 most, bool swapped)
{
    const quint64 count = pieceFor(link, most, swapped);
    if (link.kind() == LLDCmodule::ifTCP && !swapped)
        return link.trySendFile(file.handle(), position, count);
    return link.trySend(load(position, count, swapped), count);
}

quint64 ReplaySource::pieceFor(const SampleLink &link, quint64 most, bool swapped) const
{
    if (link.kind() == LLDCmodule::ifTCP)
        return std::min(most, swapped ? bufferedBytes : directBytes);
    const quint64 whole = SampleLink::datagramBytes / layout.sampleBytes() * layout.sampleBytes();
    return std::min(most, std::max<quint64>(whole, layout.sampleBytes()));
}

/// The bytes from @p position on, which may lie within a number.
const char *ReplaySource::load(quint64 position, quint64 count, bool swapped)
{
    const quint64 before = position % layout.wordBytes();
    const quint64 behind = (layout.wordBytes() - (position + count) % layout.wordBytes()) % layout.wordBytes();
    const quint64 all = before + count + behind;
    if (buffer.size() < all) // one for all pieces, which are of some few sizes
        buffer.resize(all);
    file.readWholeAt(position - before, buffer.data(), static_cast<qint64>(all));
    if (swapped)
        swapWords(buffer.data(), all, layout.wordBytes());
    return buffer.data() + before;
}

} // namespace installation::recorder
