#include "benchmarks/support/recordpool.h"

#include <benchmark/benchmark.h>

#include <QSharedDataPointer>

#include <string>

using KORVE_XML::KORVE_RecordData;

namespace
{

struct Shared : QSharedData {
    QString text;
};

struct StdIndexEntry {
    quint64 recordOffset, timestamp, tunerFrequency, sampleRate, bandwidth;
};

struct StdNote {
    quint64 timestamp;
    std::string text;
};

struct StdState {
    int state;
    std::string user, comment;
    quint64 timestamp;
};

/// The record as a program without shared storage would hold it.
struct StdRecord {
    bool finished;
    std::string recordID, korveAddress, recordName;
    quint64 size, startTime, stopTime;
    int recordStatus, dataFormat;
    quint64 recordingLoopSize, stopPosition, startPosition;
    int dataRate;
    bool deletable;
    int interface;
    std::vector<StdIndexEntry> indexEntries;
    std::vector<StdNote> bookmarks, history;
    StdNote pelinInfo;
    std::vector<StdState> processingStates;
    std::vector<StdNote> linkedRecords;
};

std::vector<StdNote> notes(const QVector<PlainNote> &plain)
{
    std::vector<StdNote> list;
    for (const PlainNote &note : plain)
        list.push_back({note.timestamp, note.text.toStdString()});
    return list;
}

StdRecord stdRecord(const PlainRecord &plain)
{
    StdRecord record{};
    record.recordID = plain.recordID.toStdString();
    record.korveAddress = plain.korveAddress.toStdString();
    record.recordName = plain.recordName.toStdString();
    record.size = plain.size;
    for (const PlainIndexEntry &entry : plain.indexEntries)
        record.indexEntries.push_back(
            {entry.recordOffset, entry.timestamp, entry.tunerFrequency, entry.sampleRate, entry.bandwidth});
    record.bookmarks = notes(plain.bookmarks);
    record.history = notes(plain.history);
    record.pelinInfo = {plain.pelinInfo.timestamp, plain.pelinInfo.text.toStdString()};
    for (const PlainState &state : plain.processingStates)
        record.processingStates.push_back(
            {state.state, state.user.toStdString(), state.comment.toStdString(), state.timestamp});
    record.linkedRecords = notes(plain.linkedRecords);
    return record;
}

void copyOurs(benchmark::State &state)
{
    const std::vector<KORVE_RecordData> &pool = recordPool();
    std::size_t n = 0;
    for (auto _ : state) {
        KORVE_RecordData copy(pool[n++ % poolSize]);
        benchmark::DoNotOptimize(copy);
    }
}

void copyFloor(benchmark::State &state)
{
    std::vector<QSharedDataPointer<Shared>> pool;
    for (std::size_t n = 0; n < poolSize; ++n)
        pool.emplace_back(new Shared);
    std::size_t n = 0;
    for (auto _ : state) {
        QSharedDataPointer<Shared> copy(pool[n++ % poolSize]);
        benchmark::DoNotOptimize(copy);
    }
}

void touchOurs(benchmark::State &state)
{
    std::size_t n = 0;
    for (auto _ : state) {
        const KORVE_RecordData copy(recordPool()[n++ % poolSize]);
        benchmark::DoNotOptimize(copy.IsRecordIDSet());
    }
}

void touchFloor(benchmark::State &state)
{
    std::vector<StdRecord> pool;
    for (const PlainRecord &record : plainPool())
        pool.push_back(stdRecord(record));
    std::size_t n = 0;
    for (auto _ : state) {
        StdRecord copy(pool[n++ % poolSize]);
        benchmark::DoNotOptimize(copy);
    }
}

BENCHMARK(copyOurs)->Name("copy/ours");
BENCHMARK(copyFloor)->Name("copy/floor");
BENCHMARK(touchOurs)->Name("copy.touch/ours");
BENCHMARK(touchFloor)->Name("copy.touch/floor");

} // namespace
