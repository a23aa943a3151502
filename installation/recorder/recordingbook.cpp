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

/// @p setting as it is at @p position, with the time of that, counted from the first sample that came so.
IndexEntry entryAt(quint64 position, IndexEntry setting, quint64 nowUs, quint64 sampleBytes)
{
    const quint64 bytes = position - setting.offsetBytes;
    if (bytes > 0 && setting.sampleRateHz == 0) {
        setting.timestampUs = nowUs;
    } else if (bytes > 0) {
        const long double seconds = static_cast<long double>(bytes / sampleBytes) / setting.sampleRateHz;
        setting.timestampUs += static_cast<quint64>(seconds * 1'000'000.0L + 0.5L);
    }
    setting.offsetBytes = position;
    return setting;
}

/// An entry at the begin, one where each further link begins, and one at the end.
QVector<IndexEntry> indexOf(const RecordingProgress &progress, const SampleLayout &layout)
{
    QVector<IndexEntry> index = progress.settings;
    index.first() = entryAt(progress.begin, index.first(), progress.nowUs, layout.sampleBytes());
    index.append(entryAt(progress.end, progress.settings.last(), progress.nowUs, layout.sampleBytes()));
    for (IndexEntry &entry : index)
        entry.bandwidthHz = layout.format.complex ? entry.sampleRateHz : entry.sampleRateHz / 2;
    return index;
}

/// Describes the index in the way of SigMF, where samples count from the beginning.
void describeCaptures(Record &record, quint64 sampleBytes)
{
    QJsonObject global = record.sigmf.value(QLatin1String("global")).toObject();
    global[QLatin1String("core:sample_rate")] = double(record.index.first().sampleRateHz);
    record.sigmf[QLatin1String("global")] = global;
    QJsonArray captures;
    for (const IndexEntry &entry : record.index.mid(0, record.index.size() - 1))
        captures.append(QJsonObject{
            {QStringLiteral("core:sample_start"), double((entry.offsetBytes - record.startPosition) / sampleBytes)},
            {QStringLiteral("core:frequency"), double(entry.tunerFrequencyHz)},
            {QStringLiteral("core:datetime"), toSigmfTime(entry.timestampUs)}});
    record.sigmf[QLatin1String("captures")] = captures;
}

void describe(Record &record, const RecordingProgress &progress)
{
    const SampleLayout layout = sampleLayout(record);
    record.sizeBytes = progress.end;
    record.startPosition = progress.begin;
    record.stopPosition = progress.end;
    record.index = indexOf(progress, layout);
    record.startUs = record.index.first().timestampUs;
    record.stopUs = record.index.last().timestampUs;
    describeCaptures(record, layout.sampleBytes());
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

/// Moves what is kept of a loop to where close() of the store expects it.
void orderSamples(StoreThread &store, const QString &recordId, quint64 begin, quint64 end,
                  const std::stop_token &cancellation = {})
{
    const auto [from, to] = store.ask(
        [recordId](RecordStore &records) {
            return std::pair(records.samplesPath(recordId), records.orderedPath(recordId));
        },
        closeLimit);
    moveSection(from, begin, end, to, cancellation);
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
        return store.ask([id = recordId](RecordStore &records) { records.discard(id); }, closeLimit);
    note(progress); // a loop that is in order is known by this
    if (progress.begin > 0)
        orderSamples(store, recordId, progress.begin, progress.end);
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

bool closeRecordingInOrder(RecordStore &records, const RecordSummary &record)
{
    const bool isInOrder = quint64(fileStatus(records.samplesPath(record.id)).st_size) < record.sizeBytes;
    if (record.startPosition > 0 && !isInOrder)
        return false;
    records.close(record.id, putInOrder);
    return true;
}

void closeLoop(StoreThread &store, const RecordSummary &loop, const std::stop_token &cancellation)
{
    orderSamples(store, loop.id, loop.startPosition, loop.sizeBytes, cancellation);
    store.ask([id = loop.id](RecordStore &records) { records.close(id, putInOrder); }, closeLimit);
}

} // namespace installation::recorder
