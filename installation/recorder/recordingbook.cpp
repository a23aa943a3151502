#include "installation/recorder/recordingbook.h"

#include "installation/recorder/file.h"
#include "installation/recorder/filetime.h"
#include "installation/recorder/looporder.h"
#include "installation/recorder/notes.h"
#include "installation/recorder/recordstore.h"
#include "installation/recorder/samplelayout.h"
#include "installation/recorder/storethread.h"

#include <QJsonArray>

namespace installation::recorder
{

namespace
{

/// How long the end of a recording waits for the store: nobody else will see to it before the next start.
constexpr std::chrono::minutes closeLimit(2);

using KORVE_XML::KORVE_RecordData;

/// When the sample at @p position came, counted from the first one.
quint64 timeAt(const RecordingProgress &progress, quint64 position, quint64 sampleBytes)
{
    if (progress.sampleRateHz == 0)
        return position == 0 ? progress.firstUs : progress.nowUs;
    const long double seconds = static_cast<long double>(position / sampleBytes) / progress.sampleRateHz;
    return progress.firstUs + static_cast<quint64>(seconds * 1'000'000.0L + 0.5L);
}

void describeCapture(Record &record, const RecordingProgress &progress)
{
    QJsonObject global = record.sigmf.value(QLatin1String("global")).toObject();
    global[QLatin1String("core:sample_rate")] = double(progress.sampleRateHz);
    record.sigmf[QLatin1String("global")] = global;
    record.sigmf[QLatin1String("captures")] =
        QJsonArray{QJsonObject{{QStringLiteral("core:sample_start"), 0},
                               {QStringLiteral("core:frequency"), double(progress.tunerFrequencyHz)},
                               {QStringLiteral("core:datetime"), toSigmfTime(record.startUs)}}};
}

void describe(Record &record, const RecordingProgress &progress)
{
    const SampleLayout layout = sampleLayout(record);
    record.sizeBytes = progress.end;
    record.startPosition = progress.begin;
    record.stopPosition = progress.end;
    record.startUs = timeAt(progress, progress.begin, layout.sampleBytes());
    record.stopUs = timeAt(progress, progress.end, layout.sampleBytes());
    const quint64 bandwidthHz = layout.format.complex ? progress.sampleRateHz : progress.sampleRateHz / 2;
    record.index = {{progress.begin, record.startUs, progress.tunerFrequencyHz, progress.sampleRateHz, bandwidthHz},
                    {progress.end, record.stopUs, progress.tunerFrequencyHz, progress.sampleRateHz, bandwidthHz}};
    describeCapture(record, progress);
}

/// From here on its positions count from what was kept first.
void putInOrder(Record &record)
{
    const quint64 begin = record.startPosition;
    record.sizeBytes -= begin;
    record.startPosition = 0;
    record.stopPosition = record.sizeBytes;
    for (IndexEntry &entry : record.index)
        entry.offsetBytes -= begin;
    record.status = KORVE_RecordData::IDLE;
}

} // namespace

void RecordingBook::note(const RecordingProgress &progress)
{
    store.ask([id = recordId, progress](RecordStore &records) {
        records.update(id, [progress](Record &record) { describe(record, progress); });
    });
}

void RecordingBook::close(const RecordingProgress &progress, const QStringList &remarks)
{
    if (progress.end == progress.begin)
        return store.ask([id = recordId](RecordStore &records) { records.discard(id); });
    note(progress); // a loop that is in order is known by this
    if (progress.begin > 0) {
        const auto [from, to] = store.ask([id = recordId](RecordStore &records) {
            return std::pair(records.samplesPath(id), records.orderedPath(id));
        });
        moveSection(from, progress.begin, progress.end, to);
    }
    const auto closeRecord = [id = recordId, remarks, nowUs = progress.nowUs](RecordStore &records) {
        records.close(id, [&](Record &record) {
            putInOrder(record);
            for (const QString &remark : remarks)
                addNoteAfter(record.history, {nowUs, remark}, maximumNotes);
        });
    };
    store.ask(closeRecord, closeLimit);
}

void RecordingBook::remark(const Note &note)
{
    store.ask([id = recordId, note](RecordStore &records) {
        records.change(id, [&](Record &record) { addNoteAfter(record.history, note, maximumNotes); });
    });
}

void closeRecording(RecordStore &records, const RecordSummary &record)
{
    const bool isInOrder = quint64(fileStatus(records.samplesPath(record.id)).st_size) < record.sizeBytes;
    if (record.startPosition > 0 && !isInOrder)
        moveSection(records.samplesPath(record.id), record.startPosition, record.sizeBytes, records.orderedPath(record.id));
    records.close(record.id, [](Record &closed) { putInOrder(closed); });
}

} // namespace installation::recorder
