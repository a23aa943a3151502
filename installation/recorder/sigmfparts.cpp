#include "installation/recorder/sigmfparts.h"

#include "installation/recorder/filetime.h"
#include "installation/recorder/positiontimes.h"

#include <QJsonArray>

#include <algorithm>
#include <vector>

namespace installation::recorder
{

namespace
{

const QString startKey = QStringLiteral("core:sample_start");
const QString countKey = QStringLiteral("core:sample_count");
const QString offsetKey = QStringLiteral("core:offset"); // the number of the first sample in the file

/// A section in samples, and where it goes. Numbers of JSON are doubles, which count samples to 2^53.
struct Move {
    double begin;
    double end;
    double target;
};

/// A capture or an annotation, taken apart once: there may be many of them, and many sections.
struct Marked {
    double start;
    double end; ///< of an annotation
    QJsonObject object;
};

/// Those of @p list, counted from the first sample in the file, which has the number @p offset there.
std::vector<Marked> marked(const QJsonValue &list, double offset)
{
    std::vector<Marked> all;
    for (const QJsonValue value : list.toArray()) {
        const QJsonObject object = value.toObject();
        const double start = object.value(startKey).toDouble(offset) - offset;
        all.push_back({start, start + object.value(countKey).toDouble(), object});
    }
    return all;
}

QJsonObject at(QJsonObject object, double start)
{
    object[startKey] = start;
    return object;
}

/// The capture that holds for the first sample of a section, with the time of that sample.
QJsonObject firstCapture(const std::vector<Marked> &captures, const Move &move, quint64 timeUs)
{
    const auto found = std::find_if(captures.rbegin(), captures.rend(),
                                    [&](const Marked &capture) { return capture.start <= move.begin; });
    QJsonObject held = found == captures.rend() ? QJsonObject() : found->object;
    held.remove(QStringLiteral("core:global_index")); // counts from elsewhere
    held[QStringLiteral("core:datetime")] = toSigmfTime(timeUs);
    return at(held, move.target);
}

void appendCaptures(QJsonArray &target, const std::vector<Marked> &captures, const Move &move)
{
    for (const Marked &capture : captures)
        if (capture.start > move.begin && capture.start < move.end)
            target.append(at(capture.object, move.target + capture.start - move.begin));
}

void appendAnnotations(QJsonArray &target, const std::vector<Marked> &annotations, const Move &move)
{
    for (const Marked &whole : annotations) {
        const double start = std::max(whole.start, move.begin);
        const double end = std::min(whole.end, move.end);
        const bool beginsHere = whole.start >= move.begin && whole.start < move.end;
        if (!beginsHere && end <= start)
            continue;
        QJsonObject annotation = whole.object;
        if (annotation.contains(countKey))
            annotation[countKey] = end - start;
        target.append(at(annotation, move.target + start - move.begin));
    }
}

} // namespace

QJsonObject sigmfOfParts(const QJsonObject &sigmf, const QVector<FilePart> &parts, const PositionTimes &times)
{
    const auto sampleBytes = static_cast<double>(times.layout().sampleBytes());
    QJsonObject global = sigmf.value(QLatin1String("global")).toObject();
    const double offset = global.value(offsetKey).toDouble();
    const std::vector<Marked> oldCaptures = marked(sigmf.value(QLatin1String("captures")), offset);
    const std::vector<Marked> oldAnnotations = marked(sigmf.value(QLatin1String("annotations")), offset);
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
    global.remove(QStringLiteral("core:sha512"));
    global.remove(offsetKey);
    result[QStringLiteral("global")] = global;
    result[QStringLiteral("captures")] = captures;
    result[QStringLiteral("annotations")] = annotations;
    return result;
}

} // namespace installation::recorder
