#include "installation/recorder/recordingwriter.h"

#include "installation/recorder/wordorder.h"

#include <algorithm>

namespace installation::recorder
{

namespace
{
constexpr quint64 blockBytes = 4096; // what a disk gives back
}

RecordingWriter::RecordingWriter(const QString &path, const SampleLayout &layout, quint64 loopBytes)
    : layout(layout), loopBytes(loopBytes), file(File::create(path))
{
}

void RecordingWriter::write(const char *bytes, qint64 size, bool swapped)
{
    waiting.append(bytes, static_cast<int>(size));
    const int whole = waiting.size() - waiting.size() % int(layout.sampleBytes());
    QByteArray samples = waiting.left(whole);
    waiting.remove(0, whole);
    if (swapped)
        swapWords(samples.data(), quint64(samples.size()), layout.wordBytes());
    file.write(samples);
    endPosition += quint64(whole);
}

void RecordingWriter::release(quint64 position)
{
    const quint64 to = position / blockBytes * blockBytes;
    if (to > releasedTo)
        file.release(releasedTo, to - releasedTo);
    releasedTo = std::max(releasedTo, to);
}

quint64 RecordingWriter::begin() const
{
    const quint64 ofLoop = loopBytes != 0 && endPosition > loopBytes ? endPosition - loopBytes : 0;
    return std::max(ofLoop, lostBefore);
}

void RecordingWriter::cut()
{
    lostBefore = begin();
    const auto present = static_cast<quint64>(file.status().st_size);
    endPosition = present - present % layout.sampleBytes();
    waiting.clear();
    file.truncate(endPosition);
}

void RecordingWriter::giveUp(quint64 bytes)
{
    lostBefore = begin();
    const quint64 given = std::min(bytes, (endPosition - lostBefore) / 2) / layout.sampleBytes() * layout.sampleBytes();
    endPosition -= given;
    file.release(endPosition, given);
}

} // namespace installation::recorder
