#pragma once

#include "installation/recorder/file.h"
#include "installation/recorder/positiontimes.h"
#include "installation/recorder/spectrum/spectrumline.h"

namespace installation::recorder
{

/// What is to be seen of a record. Positions are bytes from the first sample on.
struct SpectrumRequest {
    quint64 startPosition = 0;
    quint64 stopPosition = 0;
    quint64 lineCount = 0;
    quint32 fftSize = 0;
    quint32 window = 0; ///< a SpectrumWindow
};

/// Levels over frequency at places that are spread evenly over a section of a record: the first line begins where the
/// section does, the last one ends where it does.
///
/// Its bytes are those of docs/spectrum.md. The samples are read where they are needed, so that a long record takes no
/// more memory than a short one.
/// Thread: one at a time; reads from the disk.  Errors: throws RecorderError.
class OverviewSpectrum
{
public:
    static constexpr quint32 smallestFft = 2;
    static constexpr quint32 greatestFft = 1 << 20;
    static constexpr quint64 maximumLines = 10'000'000;
    static constexpr quint32 version = 1;

    /// Opens the samples of @p record.
    /// @throws RecorderError with `ekINVALID_VALUE` and a reason for a request that makes no sense.
    OverviewSpectrum(const Record &record, const QString &samplesPath, const SpectrumRequest &request);

    quint64 lineCount() const { return request.lineCount; }
    std::size_t lineBytes() const;
    QByteArray head() const;
    /// Writes lineBytes() bytes to @p target, which is aligned as a float is.
    void writeLine(quint64 number, char *target);
    /// Lines as bytes, as many from @p first on as there are, but not more than @p count.
    QByteArray lines(quint64 first, quint64 count);

private:
    quint64 positionOf(quint64 line) const;

    const SpectrumRequest request;
    const PositionTimes times;
    const File file;
    SpectrumLine line;
    std::vector<char> stretch;
};

} // namespace installation::recorder
