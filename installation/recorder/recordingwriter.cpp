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

void RecordingWriter::cut(quint64 further)
{
    const quint64 present = static_cast<quint64>(file.status().st_size);
    const quint64 kept = present - std::min(present, further);
    endPosition = kept - kept % layout.sampleBytes();
    waiting.clear();
    file.truncate(endPosition);
}

} // namespace installation::recorder
