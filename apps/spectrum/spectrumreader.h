#pragma once

#include <QByteArray>
#include <QVector>

#include <exception>
#include <optional>

namespace apps
{

/// Why a stream is no overview spectrum, or not a whole one.
class SpectrumError : public std::exception
{
public:
    explicit SpectrumError(const QString &text) : utf8(text.toUtf8()) {}

    QString text() const { return QString::fromUtf8(utf8); }
    const char *what() const noexcept override { return utf8.constData(); }

private:
    QByteArray utf8;
};

/// What a spectrum says of itself. Positions are bytes from the record's first sample on.
struct SpectrumHead {
    quint32 fftSize = 0;
    quint32 window = 0;        ///< numbered as in the contracts
    quint32 valuesPerLine = 0; ///< fftSize of complex samples; half of it and one of real ones
    quint64 lineCount = 0;
    quint64 startPosition = 0;
    quint64 stopPosition = 0;
    quint64 sampleRateHz = 0;
    quint64 tunerFrequencyHz = 0;

    /// Transforms of 2 samples all look so.
    bool isComplex() const { return valuesPerLine == fftSize; }

    bool operator==(const SpectrumHead &) const = default;
};

struct SpectrumLine {
    quint64 number = 0;
    quint64 position = 0;    ///< of its first sample
    quint64 timestampUs = 0; ///< since 1970, UTC
    QVector<float> levels;   ///< dBFS, the lowest frequency first
};

/// Takes an overview spectrum apart as it comes in, in pieces of any size.
///
/// Nothing it says is believed before it is checked: it holds what was added and not asked for yet, and no more.
/// Thread: any, one at a time.  Errors: throws SpectrumError, and goes on throwing it.
class SpectrumReader
{
public:
    void add(const QByteArray &bytes);
    /// None before it has come.
    const std::optional<SpectrumHead> &head() const { return spectrumHead; }
    /// The next line; none before the whole of it has come, nor after the last.
    std::optional<SpectrumLine> next();
    /// Whether the last line has been taken.
    bool isComplete() const { return spectrumHead && linesTaken == spectrumHead->lineCount; }
    /// At the end of the stream.
    void requireComplete() const;

private:
    void readHead();
    void requireNothingBehind() const;
    qsizetype lineBytes() const;
    qsizetype pending() const { return buffer.size() - consumed; }
    const char *place() const { return buffer.constData() + consumed; }

    QByteArray buffer;
    qsizetype consumed = 0; ///< bytes at its begin that are done with
    std::optional<SpectrumHead> spectrumHead;
    quint64 linesTaken = 0;
    quint64 lastPosition = 0;
};

} // namespace apps
