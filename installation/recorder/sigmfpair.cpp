#include "installation/recorder/sigmfpair.h"

#include "installation/recorder/file.h"
#include "installation/recorder/filetime.h"
#include "installation/recorder/jsonmembers.h"
#include "installation/recorder/recorddocument.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordfolder.h"
#include "installation/recorder/samplelayout.h"
#include "installation/recorder/signaldescription.h"

#include <QFileInfo>

#include <cmath>

namespace installation::recorder
{

namespace
{

const QString metaEnding = QStringLiteral(".sigmf-meta");
const QString dataEnding = QStringLiteral(".sigmf-data");

RecorderError refusal(const QString &reason)
{
    return {TQ_KORVE::ekINVALID_VALUE, reason};
}

/// Samples that do not fill the whole file of samples, or lie elsewhere, are not what we can keep byte for byte.
void requirePlainSamples(const JsonMembers &global, const QVector<QJsonObject> &captures)
{
    const QString dataset = QStringLiteral("core:dataset");
    const QString metadataOnly = QStringLiteral("core:metadata_only");
    if (global.has(dataset) || (global.has(metadataOnly) && global.truth(metadataOnly)))
        throw refusal(QStringLiteral("its samples are not in the file beside it"));
    bool hasOtherBytes = global.has(QStringLiteral("core:trailing_bytes"));
    for (const QJsonObject &capture : captures)
        hasOtherBytes = hasOtherBytes || capture.contains(QLatin1String("core:header_bytes"));
    if (hasOtherBytes)
        throw refusal(QStringLiteral("its file of samples holds other bytes as well"));
}

quint64 tunerFrequency(const JsonMembers &capture)
{
    const QString key = QStringLiteral("core:frequency");
    const double frequency = capture.has(key) ? capture.number(key) : 0;
    if (!(frequency < 1e15))
        throw refusal(QStringLiteral("\"core:frequency\" is %1").arg(frequency));
    return frequency > 0 ? std::llround(frequency) : 0; // a signal in the base band may be left and right of 0
}

/// A number of samples, written as JSON has numbers: exact to 2^53.
quint64 sampleNumber(const JsonMembers &members, const QString &key)
{
    constexpr double most = 9007199254740992.0;
    const double number = members.number(key);
    if (!(number >= 0 && number <= most) || number != std::floor(number))
        throw refusal(QStringLiteral("\"%1\" is %2, which counts no samples").arg(key).arg(number, 0, 'g', 17));
    return static_cast<quint64>(number);
}

/// Where the capture begins in the file of samples. Only the first one begins there when it does not say so.
quint64 firstSample(const JsonMembers &capture, bool isFirst, quint64 offset)
{
    const QString key = QStringLiteral("core:sample_start");
    if (isFirst && !capture.has(key))
        return 0;
    const quint64 number = sampleNumber(capture, key);
    if (number < offset)
        throw refusal(QStringLiteral("\"%1\" is %2, before the first sample, which is %3")
                          .arg(key, QString::number(number), QString::number(offset)));
    return number - offset;
}

std::optional<quint64> captureTime(const JsonMembers &capture)
{
    const QString key = QStringLiteral("core:datetime");
    if (!capture.has(key))
        return {};
    const QString text = capture.text(key);
    if (const std::optional<quint64> time = fromSigmfTime(text))
        return time;
    throw refusal(QStringLiteral("\"%1\" is \"%2\", %3").arg(key, text, whyNoSigmfTime(text)));
}

QVector<SignalCapture> signalCaptures(const QVector<QJsonObject> &list, const JsonMembers &global)
{
    const QString key = QStringLiteral("core:offset");
    const quint64 offset = global.has(key) ? sampleNumber(global, key) : 0;
    QVector<SignalCapture> captures;
    for (const QJsonObject &object : list) {
        const JsonMembers capture(object);
        captures.append({firstSample(capture, captures.isEmpty(), offset), tunerFrequency(capture), captureTime(capture)});
    }
    return captures;
}

SignalDescription describeSignal(const JsonMembers &sigmf, const QString &dataPath)
{
    const JsonMembers global(sigmf.members(QStringLiteral("global")));
    const QVector<QJsonObject> captures = sigmf.list(QStringLiteral("captures"));
    requirePlainSamples(global, captures);
    SignalDescription signal;
    const SampleLayout layout = sampleLayout(global, TQ_KORVE::ekINVALID_VALUE);
    signal.sampleFormat = layout.format;
    signal.dataFormat = layout.format.dataFormat();
    signal.channels = layout.channels;
    signal.sampleRateHz = global.number(QStringLiteral("core:sample_rate"));
    signal.sizeBytes = fileStatus(dataPath).st_size;
    signal.beginUs = modificationTimeUs(dataPath);
    signal.captures = signalCaptures(captures, global);
    return signal;
}

QByteArray checksum(const QJsonObject &global)
{
    const QString key = QStringLiteral("core:sha512");
    return global.contains(key) ? QByteArray::fromHex(JsonMembers(global).text(key).toLatin1()) : QByteArray();
}

/// What another recorder knew of it beyond the signal.
void keepOurs(Record &record, const Record &theirs)
{
    record.name = theirs.name;
    record.format = theirs.format;
    record.deletable = theirs.deletable;
    record.bookmarks = theirs.bookmarks;
    record.history = theirs.history;
}

} // namespace

bool isSigmfName(const QString &path)
{
    return path.endsWith(metaEnding) || path.endsWith(dataEnding);
}

ImportSource inspectSigmf(const QString &path)
{
    static_assert(sizeof ".sigmf-meta" == sizeof ".sigmf-data");
    const QString base = path.chopped(metaEnding.size());
    const QString metaPath = base + metaEnding;
    const QByteArray document = readWhole(metaPath, RecordFolder::maximumMetaBytes);
    const QJsonObject sigmf = JsonMembers::document(document, metaPath);
    const QString dataPath = base + dataEnding;
    ImportSource source{std::make_unique<PlainSamples>(dataPath), {}, describe(describeSignal(JsonMembers(sigmf), dataPath))};
    source.sha512 = checksum(sigmf.value(QLatin1String("global")).toObject());
    source.record.name = QFileInfo(base).fileName();
    if (isOurDocument(sigmf))
        keepOurs(source.record, fromDocument(document, metaPath));
    source.record.sigmf = sigmf;
    return source;
}

} // namespace installation::recorder
