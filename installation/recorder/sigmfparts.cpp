#include "installation/recorder/sigmfparts.h"

#include "installation/recorder/filetime.h"
#include "installation/recorder/positiontimes.h"

#include <QJsonArray>

#include <algorithm>

namespace installation::recorder
{

namespace
{

const QString startKey = QStringLiteral("core:sample_start");
const QString countKey = QStringLiteral("core:sample_count");

/// A section in samples, and where it goes. Numbers of JSON are doubles, which count samples to 2^53.
struct Move {
    double begin;
    double end;
    double target;
};

double startOf(const QJsonObject &object)
{
    return object.value(startKey).toDouble();
}

QJsonObject at(QJsonObject object, double start)
{
    object[startKey] = start;
    return object;
}

/// The capture that holds for the first sample of a section, with the time of that sample.
QJsonObject firstCapture(const QJsonArray &captures, const Move &move, quint64 timeUs)
{
    QJsonObject held;
    for (const QJsonValue capture : captures)
        if (startOf(capture.toObject()) <= move.begin)
            held = capture.toObject();
    held.remove(QStringLiteral("core:global_index")); // counts from elsewhere
    held[QStringLiteral("core:datetime")] = toSigmfTime(timeUs);
    return at(held, move.target);
}

void appendCaptures(QJsonArray &target, const QJsonArray &captures, const Move &move)
{
    for (const QJsonValue capture : captures) {
        const double start = startOf(capture.toObject());
        if (start > move.begin && start < move.end)
            target.append(at(capture.toObject(), move.target + start - move.begin));
    }
}

void appendAnnotations(QJsonArray &target, const QJsonArray &annotations, const Move &move)
{
    for (const QJsonValue value : annotations) {
        QJsonObject annotation = value.toObject();
        const double start = std::max(startOf(annotation), move.begin);
        const double end = std::min(startOf(annotation) + annotation.value(countKey).toDouble(), move.end);
        const bool beginsHere = startOf(annotation) >= move.begin && startOf(annotation) < move.end;
        if (!beginsHere && end <= start)
            continue;
        if (annotation.contains(countKey))
            annotation[countKey] = end - start;
        target.append(at(annotation, move.target + start - move.begin));
    }
}

} // namespace

QJsonObject sigmfOfParts(const QJsonObject &sigmf, const QVector<FilePart> &parts, const PositionTimes &times)
{
    const auto sampleBytes = static_cast<double>(times.layout().sampleBytes());
    const QJsonArray oldCaptures = sigmf.value(QLatin1String("captures")).toArray();
    const QJsonArray oldAnnotations = sigmf.value(QLatin1String("annotations")).toArray();
    QJsonArray captures;
    QJsonArray annotations;
    double target = 0;
    for (const FilePart &part : parts) {
        const Move move{part.begin / sampleBytes, part.end / sampleBytes, target};
        captures.append(firstCapture(oldCaptures, move, times.timeUs(part.begin)));
        appendCaptures(captures, oldCaptures, move);
        appendAnnotations(annotations, oldAnnotations, move);
        target += move.end - move.begin;
    }
    QJsonObject result = sigmf;
    QJsonObject global = sigmf.value(QLatin1String("global")).toObject();
    global.remove(QStringLiteral("core:sha512"));
    result[QStringLiteral("global")] = global;
    result[QStringLiteral("captures")] = captures;
    result[QStringLiteral("annotations")] = annotations;
    return result;
}

} // namespace installation::recorder
