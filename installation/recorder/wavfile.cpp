#include "installation/recorder/wavfile.h"

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

/// The library would also try its readers of other formats, and those of compressed sound on what has none.
void requireWave(const QString &path)
{
    const QByteArray head = File::openForReading(path).read(12);
    if (!(head.startsWith("RIFF") || head.startsWith("RF64")) || head.mid(8) != "WAVE")
        throw refusal(QStringLiteral("its RIFF content is not WAVE"));
}

SoundFile openSound(const QString &path, SF_INFO &info)
{
    requireWave(path); // and that it is a regular file, at which opening does not wait
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

SignalDescription describeSound(SNDFILE *file, const SF_INFO &info, quint64 beginUs)
{
    SignalDescription signal;
    signal.sampleFormat = sampleFormatOf(info);
    signal.dataFormat = KORVE_XML::KORVE_RecordData::DIGITAL_AUDIO;
    signal.channels = static_cast<unsigned>(info.channels);
    signal.sampleRateHz = info.samplerate;
    signal.sizeBytes = declaredBytes(file);
    signal.beginUs = beginUs;
    const quint64 frameBytes = quint64(signal.sampleFormat.bytes) * signal.channels;
    const quint64 presentBytes = static_cast<quint64>(info.frames) * frameBytes;
    if (presentBytes < signal.sizeBytes - signal.sizeBytes % frameBytes)
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
    SF_INFO info{};
    SoundFile file = openSound(path, info);
    const SignalDescription signal = describeSound(file.get(), info, modificationTimeUs(path));
    const unsigned frameBytes = signal.sampleFormat.bytes * signal.channels;
    ImportSource source{nullptr, {}, describe(signal)};
    source.samples = std::make_unique<WavSamples>(std::move(file), frameBytes, signal.sizeBytes);
    source.record.name = QFileInfo(path).completeBaseName();
    source.record.sigmf = sigmfOf(signal);
    return source;
}

} // namespace installation::recorder
