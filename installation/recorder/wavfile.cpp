#include "installation/recorder/wavfile.h"

#include "installation/recorder/file.h"
#include "installation/recorder/filetime.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/signaldescription.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QtEndian>

#include <algorithm>

namespace installation::recorder
{

namespace
{

constexpr unsigned extensibleCode = 0xFFFE;
constexpr quint32 sizeIsElsewhere = 0xFFFFFFFF;
constexpr qint64 formatBytes = 40; // as much of it as anybody defines

RecorderError refusal(const QString &reason)
{
    return {TQ_KORVE::ekINVALID_VALUE, reason};
}

struct Format {
    unsigned code = 0;
    unsigned channels = 0;
    quint32 sampleRateHz = 0;
    unsigned bits = 0;
};

struct Samples {
    quint64 firstByte = 0;
    quint64 sizeBytes = 0;
};

template <typename Integer> Integer at(const QByteArray &bytes, int position)
{
    return qFromLittleEndian<Integer>(bytes.constData() + position);
}

/// Walks the chunks up to the samples. Every length is checked against what is left of the file.
class ChunkReader
{
public:
    explicit ChunkReader(const QString &path) : file(File::openForReading(path)), fileBytes(file.status().st_size) {}

    void read()
    {
        if (read(12).mid(8) != "WAVE")
            throw refusal(QStringLiteral("its RIFF content is not WAVE"));
        while (samples.firstByte == 0)
            readChunk();
        if (format.code == 0)
            throw refusal(QStringLiteral("its samples come before their format"));
    }

    Format format;
    Samples samples;

private:
    QByteArray read(qint64 count)
    {
        const QByteArray bytes = file.read(count);
        if (bytes.size() < count)
            throw refusal(QStringLiteral("the file ends in its header"));
        position += count;
        return bytes;
    }

    void readChunk()
    {
        const QByteArray head = read(8);
        const QByteArray name = head.left(4);
        const quint32 size = at<quint32>(head, 4);
        if (name == "data")
            return placeSamples(size);
        if (size > fileBytes - position)
            throw refusal(QStringLiteral("the file ends in its header"));
        const quint64 next = position + size + size % 2; // chunks begin at even places
        if (name == "fmt ")
            readFormat(read(std::min<qint64>(size, formatBytes)));
        else if (name == "ds64")
            readLongSizes(read(std::min<qint64>(size, 16)));
        file.seek(next);
        position = next;
    }

    void readFormat(const QByteArray &bytes)
    {
        if (bytes.size() < 16)
            throw refusal(QStringLiteral("its format has %1 bytes only").arg(bytes.size()));
        format = {at<quint16>(bytes, 0), at<quint16>(bytes, 2), at<quint32>(bytes, 4), at<quint16>(bytes, 14)};
        if (format.code == extensibleCode && bytes.size() == formatBytes)
            format.code = at<quint16>(bytes, 24);
    }

    void readLongSizes(const QByteArray &bytes)
    {
        if (bytes.size() == 16)
            longSize = at<quint64>(bytes, 8);
    }

    void placeSamples(quint32 size)
    {
        samples = {position, size == sizeIsElsewhere && longSize != 0 ? longSize : size};
        if (samples.sizeBytes > fileBytes - position)
            throw refusal(QStringLiteral("the file is cut off: %1 of %2 bytes of samples are there")
                              .arg(QString::number(fileBytes - position), QString::number(samples.sizeBytes)));
    }

    File file;
    const quint64 fileBytes;
    quint64 position = 0;
    quint64 longSize = 0;
};

SignalDescription describeSound(const Format &format, const Samples &samples, quint64 beginUs)
{
    const std::optional<SampleFormat> sampleFormat = SampleFormat::ofWav(format.code, format.bits);
    if (!sampleFormat)
        throw refusal(QStringLiteral("samples of format %1 with %2 bits are not known")
                          .arg(QString::number(format.code), QString::number(format.bits)));
    SignalDescription signal;
    signal.sampleFormat = *sampleFormat;
    signal.dataFormat = KORVE_XML::KORVE_RecordData::DIGITAL_AUDIO;
    signal.channels = format.channels;
    signal.sampleRateHz = format.sampleRateHz;
    signal.sizeBytes = samples.sizeBytes;
    signal.beginUs = beginUs;
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
    ChunkReader chunks(path);
    chunks.read();
    const SignalDescription signal = describeSound(chunks.format, chunks.samples, modificationTimeUs(path));
    ImportSource source{path, chunks.samples.firstByte, {}, describe(signal)};
    source.record.name = QFileInfo(path).completeBaseName();
    source.record.sigmf = sigmfOf(signal);
    return source;
}

} // namespace installation::recorder
