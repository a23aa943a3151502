#include "installation/recorder/wavfile.h"

#include "installation/recorder/file.h"
#include "installation/recorder/filetime.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/signaldescription.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QtEndian>

#include <sndfile.h>

#include <algorithm>
#include <mutex>

namespace installation::recorder
{

namespace
{

constexpr quint32 sizeIsElsewhere = 0xFFFFFFFF;
constexpr unsigned longSizeBytes = 16; // of the chunk of long sizes: that of the file, then that of the samples

RecorderError refusal(const QString &reason)
{
    return {TQ_KORVE::ekINVALID_VALUE, reason};
}

struct Close {
    void operator()(SNDFILE *file) const { sf_close(file); }
};
using SoundFile = std::unique_ptr<SNDFILE, Close>;

class WavSamples : public SampleReader
{
public:
    WavSamples(SoundFile file, unsigned frameBytes, quint64 sizeBytes)
        : file(std::move(file)), frameBytes(frameBytes), leftBytes(sizeBytes)
    {
    }
    QByteArray read(qint64 maximum) override
    {
        const qint64 wanted = std::min(maximum - maximum % frameBytes, static_cast<qint64>(leftBytes));
        QByteArray bytes(static_cast<int>(wanted), Qt::Uninitialized);
        bytes.truncate(static_cast<int>(sf_read_raw(file.get(), bytes.data(), bytes.size())));
        leftBytes -= bytes.size();
        return bytes;
    }

private:
    const SoundFile file;
    const unsigned frameBytes; ///< no less is read at a time
    quint64 leftBytes;         ///< behind them the library would go on into other bytes, up to a whole sample
};

/// How the chunk of the format describes the samples. The library is content with what it can make of that.
struct WavFormat {
    quint16 code = 0;
    quint32 sampleRateHz = 0;
    quint16 frameBytes = 0;
    quint16 bits = 0; ///< of one sample of one channel
};

/// The library would also try its readers of other formats, and those of compressed sound on what has none.
void requireWave(const File &file)
{
    const QByteArray head = file.readAt(0, 12);
    if (!(head.startsWith("RIFF") || head.startsWith("RF64")) || head.mid(8) != "WAVE")
        throw refusal(QStringLiteral("its RIFF content is not WAVE"));
}

WavFormat readFormat(const File &file)
{
    constexpr int mostChunks = 1000; // before it; nobody writes as many
    quint64 position = 12;
    for (int chunk = 0; chunk < mostChunks; ++chunk) {
        const QByteArray bytes = file.readAt(position, 24);
        const char *const content = bytes.constData() + 8;
        if (bytes.size() == 24 && bytes.startsWith("fmt "))
            return {qFromLittleEndian<quint16>(content), qFromLittleEndian<quint32>(content + 4),
                    qFromLittleEndian<quint16>(content + 12), qFromLittleEndian<quint16>(content + 14)};
        if (bytes.size() < 8)
            break;
        const auto size = qFromLittleEndian<quint32>(bytes.constData() + 4);
        position += 8 + quint64(size) + size % 2;
    }
    throw refusal(QStringLiteral("it does not say how its samples are stored"));
}

/// The format, if it can be one that is kept byte for byte.
WavFormat plausibleFormat(const QString &path)
{
    constexpr quint16 pcm = 1, extensible = 0xFFFE;
    const File file = File::openForReading(path); // a regular file, at which opening does not wait
    requireWave(file);
    const WavFormat format = readFormat(file);
    classOfSamples(format.sampleRateHz, false); // refuses what is no rate
    if ((format.code == pcm || format.code == extensible) && format.bits % 8 != 0)
        throw refusal(QStringLiteral("samples of %1 bits are not known").arg(format.bits));
    return format;
}

SoundFile openSound(const QString &path, SF_INFO &info)
{
    static std::mutex mutex; // guards the library's one text of why the last file could not be opened
    const std::scoped_lock lock(mutex);
    SoundFile file(sf_open(QFile::encodeName(path).constData(), SFM_READ, &info));
    if (!file)
        throw refusal(QString::fromUtf8(sf_strerror(nullptr)));
    return file;
}

/// The chunk @p name and its size; the iterator is null without one, and the file's to free.
SF_CHUNK_ITERATOR *findChunk(SNDFILE *file, const char *name, SF_CHUNK_INFO &chunk)
{
    chunk.id_size = 4;
    std::copy_n(name, chunk.id_size, chunk.id);
    SF_CHUNK_ITERATOR *const found = sf_get_chunk_iterator(file, &chunk);
    return found && sf_get_chunk_size(found, &chunk) == SF_ERR_NO_ERROR ? found : nullptr;
}

quint64 longSize(SNDFILE *file)
{
    SF_CHUNK_INFO chunk{};
    SF_CHUNK_ITERATOR *const found = findChunk(file, "ds64", chunk);
    char content[longSizeBytes]{};
    const bool isWhole = found && chunk.datalen >= longSizeBytes;
    chunk.datalen = longSizeBytes;
    chunk.data = content;
    if (!isWhole || sf_get_chunk_data(found, &chunk) != SF_ERR_NO_ERROR)
        throw refusal(QStringLiteral("it does not say how many samples it has"));
    return qFromLittleEndian<quint64>(content + 8);
}

/// What the file says of the size of its samples. The library itself is content with as many as are there.
quint64 declaredBytes(SNDFILE *file)
{
    SF_CHUNK_INFO chunk{};
    if (!findChunk(file, "data", chunk))
        throw refusal(QStringLiteral("it has no samples"));
    return chunk.datalen == sizeIsElsewhere ? longSize(file) : chunk.datalen;
}

SampleFormat sampleFormatOf(const SF_INFO &info)
{
    const int subtype = info.format & SF_FORMAT_SUBMASK;
    if (const std::optional<SampleFormat> format = SampleFormat::ofSound(subtype))
        return *format;
    SF_FORMAT_INFO unknown{};
    unknown.format = subtype;
    sf_command(nullptr, SFC_GET_FORMAT_INFO, &unknown, sizeof unknown);
    throw refusal(QStringLiteral("samples in %1 are not known")
                      .arg(unknown.name ? QString::fromUtf8(unknown.name) : QString::number(subtype, 16)));
}

/// The library passes over bytes between the samples, or takes some twice, and counts otherwise.
void requireNoGaps(const WavFormat &format, const SignalDescription &signal)
{
    if (format.bits != 8 * signal.sampleFormat.bytes || format.frameBytes != signal.frameBytes())
        throw refusal(QStringLiteral("%1 samples of %2 bits do not fill the %3 bytes that they take")
                          .arg(signal.channels)
                          .arg(format.bits)
                          .arg(format.frameBytes));
}

SignalDescription describeSound(SNDFILE *file, const SF_INFO &info, quint64 beginUs)
{
    SignalDescription signal;
    signal.sampleFormat = sampleFormatOf(info);
    signal.dataFormat = KORVE_XML::KORVE_RecordData::DIGITAL_AUDIO;
    signal.channels = static_cast<unsigned>(info.channels);
    signal.sampleRateHz = info.samplerate;
    signal.sizeBytes = declaredBytes(file);
    signal.beginUs = beginUs;
    const quint64 presentBytes = static_cast<quint64>(info.frames) * signal.frameBytes();
    if (presentBytes < signal.sizeBytes - signal.sizeBytes % signal.frameBytes())
        throw refusal(QStringLiteral("the file is cut off: %1 of %2 bytes of samples are there")
                          .arg(QString::number(presentBytes), QString::number(signal.sizeBytes)));
    return signal;
}

/// What a SigMF reader must know of the samples.
QJsonObject sigmfOf(const SignalDescription &signal)
{
    const QJsonObject global{{QStringLiteral("core:datatype"), signal.sampleFormat.datatype},
                             {QStringLiteral("core:num_channels"), int(signal.channels)},
                             {QStringLiteral("core:sample_rate"), signal.sampleRateHz},
                             {QStringLiteral("core:version"), QStringLiteral("1.0.0")}};
    const QJsonObject capture{{QStringLiteral("core:sample_start"), 0},
                              {QStringLiteral("core:datetime"), toSigmfTime(signal.beginUs)}};
    return {{QStringLiteral("global"), global},
            {QStringLiteral("captures"), QJsonArray{capture}},
            {QStringLiteral("annotations"), QJsonArray()}};
}

} // namespace

ImportSource inspectWav(const QString &path)
{
    const WavFormat format = plausibleFormat(path);
    SF_INFO info{};
    SoundFile file = openSound(path, info);
    const SignalDescription signal = describeSound(file.get(), info, modificationTimeUs(path));
    requireNoGaps(format, signal);
    ImportSource source{nullptr, {}, describe(signal)};
    source.samples =
        std::make_unique<WavSamples>(std::move(file), static_cast<unsigned>(signal.frameBytes()), signal.sizeBytes);
    source.record.name = QFileInfo(path).completeBaseName();
    source.record.sigmf = sigmfOf(signal);
    return source;
}

} // namespace installation::recorder
