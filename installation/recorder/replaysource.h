#pragma once

#include "installation/recorder/file.h"
#include "installation/recorder/record.h"
#include "installation/recorder/samplelayout.h"

#include <vector>

namespace installation::recorder
{

class SampleLink;

/// The samples of a record that is played, and the ways in which they go out.
///
/// By TCP the system copies from file to socket; by UDP, or in the other byte order, they pass through a buffer.
/// Thread: one.  Errors: LinkError of the link, RecorderError of the file.
class ReplaySource
{
public:
    ReplaySource(const Record &record, const QString &samplesPath);

    quint64 sizeBytes() const { return size; }
    unsigned sampleBytes() const { return static_cast<unsigned>(layout.sampleBytes()); }
    /// 0 when nobody knows.
    quint64 sampleRateHz() const { return rateHz; }

    /// Sends from @p position on what the link takes at once, at most @p most bytes; 0 when there is no room.
    /// @p swapped: each number goes with its last byte first.
    qint64 deliver(SampleLink &link, quint64 position, quint64 most, bool swapped);

private:
    quint64 pieceFor(const SampleLink &link, quint64 most, bool swapped) const;
    const char *load(quint64 position, quint64 count, bool swapped);

    const File file;
    const quint64 size;
    const SampleLayout layout;
    const quint64 rateHz;
    std::vector<char> buffer;
};

} // namespace installation::recorder
