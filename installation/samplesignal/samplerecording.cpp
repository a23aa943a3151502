#include "installation/samplesignal/samplerecording.h"

#include "installation/samplesignal/samplesignal.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace installation::samplesignal
{

namespace
{

constexpr std::size_t blockSamples = 65536;

[[noreturn]] void fail(const QFileDevice &file)
{
    throw std::runtime_error(file.fileName().toStdString() + ": " + file.errorString().toStdString());
}

/// A file that appears when it is complete.
class NewFile
{
public:
    explicit NewFile(const QString &path) : file(path)
    {
        if (!file.open(QIODevice::WriteOnly))
            fail(file);
    }
    void write(const char *bytes, qint64 count)
    {
        if (file.write(bytes, count) != count)
            fail(file);
    }
    void commit()
    {
        if (!file.commit())
            fail(file);
    }

private:
    QSaveFile file;
};

/// Returns the checksum.
QByteArray writeSamples(const QString &path, quint64 count, quint32 seed)
{
    NewFile file(path);
    SampleSignal signal(seed);
    QCryptographicHash checksum(QCryptographicHash::Sha512);
    std::vector<IqSample> block(blockSamples);
    for (quint64 left = count; left > 0; left -= block.size()) {
        block.resize(std::min<quint64>(left, blockSamples));
        signal.fill(block);
        const auto *const bytes = reinterpret_cast<const char *>(block.data());
        const int size = static_cast<int>(block.size() * sizeof(IqSample));
        checksum.addData(bytes, size);
        file.write(bytes, size);
    }
    file.commit();
    return checksum.result();
}

QJsonObject annotation(const char *label, double offsetHz, double halfWidthHz, quint64 count)
{
    const double middle = SampleSignal::tunerFrequencyHz + offsetHz;
    return {{QStringLiteral("core:sample_start"), 0},
            {QStringLiteral("core:sample_count"), static_cast<qint64>(count)},
            {QStringLiteral("core:freq_lower_edge"), middle - halfWidthHz},
            {QStringLiteral("core:freq_upper_edge"), middle + halfWidthHz},
            {QStringLiteral("core:label"), QLatin1String(label)}};
}

QByteArray metaData(quint64 count, const QByteArray &checksum)
{
    using Modulated = SampleSignal::Modulated;
    constexpr double keyedHalfWidthHz = 10e3; // where nearly all of it is; the edges of the keying reach farther
    const QJsonObject global{
        {QStringLiteral("core:version"), QStringLiteral("1.0.0")},
        {QStringLiteral("core:datatype"), QStringLiteral("ci16_le")},
        {QStringLiteral("core:sample_rate"), SampleSignal::sampleRateHz},
        {QStringLiteral("core:sha512"), QString::fromLatin1(checksum.toHex())},
        {QStringLiteral("core:description"), QStringLiteral("Two signals over noise, made by korve-samplesignal")}};
    const QJsonObject capture{{QStringLiteral("core:sample_start"), 0},
                              {QStringLiteral("core:frequency"), SampleSignal::tunerFrequencyHz},
                              {QStringLiteral("core:datetime"), QStringLiteral("2026-03-01T12:00:00Z")}};
    const QJsonArray annotations{
        annotation("frequency modulated", Modulated::offsetHz, Modulated::deviationHz + Modulated::toneHz, count),
        annotation("keyed", SampleSignal::Keyed::offsetHz, keyedHalfWidthHz, count)};
    return QJsonDocument({{QStringLiteral("global"), global},
                          {QStringLiteral("captures"), QJsonArray{capture}},
                          {QStringLiteral("annotations"), annotations}})
        .toJson();
}

} // namespace

void writeSampleRecording(const QString &base, std::chrono::milliseconds duration, quint32 seed)
{
    constexpr quint64 samplesPerMs = static_cast<quint64>(SampleSignal::sampleRateHz) / 1000;
    const quint64 count = samplesPerMs * static_cast<quint64>(duration.count());
    const QByteArray checksum = writeSamples(base + QLatin1String(".sigmf-data"), count, seed);
    const QByteArray document = metaData(count, checksum);
    NewFile file(base + QLatin1String(".sigmf-meta"));
    file.write(document.constData(), document.size());
    file.commit();
}

} // namespace installation::samplesignal
