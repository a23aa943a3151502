#include "benchmarks/support/recordpool.h"

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QDataStream>

using KORVE_XML::KORVE_RecordData;

namespace
{

// Presence bytes of the pool's records: all members of the nested objects, all but the preliminary name of the record.
constexpr char recordBits[] = "\xfb\xff\x3f";

/// The compact form by stream operators, member by member.
class BareStream
{
public:
    explicit BareStream(QDataStream &stream) : stream(stream) {}

    void write(const PlainRecord &record)
    {
        stream.writeRawData(recordBits, 3);
        stream << record.recordID << record.korveAddress << record.recordName << qint64(record.size)
               << qint64(record.startTime) << qint64(record.stopTime) << record.recordStatus << record.dataFormat
               << qint64(record.recordingLoopSize) << qint64(record.stopPosition) << qint64(record.startPosition)
               << record.dataRate << record.deletable << record.interface;
        writeList(record.indexEntries, '\x1f', [&](const PlainIndexEntry &entry) {
            stream << qint64(entry.recordOffset) << qint64(entry.timestamp) << qint64(entry.tunerFrequency)
                   << qint64(entry.sampleRate) << qint64(entry.bandwidth);
        });
        const auto timeFirst = [&](const PlainNote &note) { stream << qint64(note.timestamp) << note.text; };
        const auto textFirst = [&](const PlainNote &note) { stream << note.text << qint64(note.timestamp); };
        writeList(record.bookmarks, '\x03', timeFirst);
        writeList(record.history, '\x03', timeFirst);
        stream.writeRawData("\x03", 1);
        textFirst(record.pelinInfo);
        writeList(record.processingStates, '\x0f', [&](const PlainState &state) {
            stream << state.state << state.user << state.comment << qint64(state.timestamp);
        });
        writeList(record.linkedRecords, '\x03', textFirst);
        stream << record.finished;
    }

    void read(PlainRecord &record)
    {
        stream.skipRawData(3);
        stream >> record.recordID >> record.korveAddress >> record.recordName >> record.size >> record.startTime
            >> record.stopTime >> record.recordStatus >> record.dataFormat >> record.recordingLoopSize
            >> record.stopPosition >> record.startPosition >> record.dataRate >> record.deletable >> record.interface;
        readList(record.indexEntries, [&](PlainIndexEntry &entry) {
            stream >> entry.recordOffset >> entry.timestamp >> entry.tunerFrequency >> entry.sampleRate
                >> entry.bandwidth;
        });
        const auto timeFirst = [&](PlainNote &note) { stream >> note.timestamp >> note.text; };
        const auto textFirst = [&](PlainNote &note) { stream >> note.text >> note.timestamp; };
        readList(record.bookmarks, timeFirst);
        readList(record.history, timeFirst);
        stream.skipRawData(1);
        textFirst(record.pelinInfo);
        readList(record.processingStates, [&](PlainState &state) {
            stream >> state.state >> state.user >> state.comment >> state.timestamp;
        });
        readList(record.linkedRecords, textFirst);
        stream >> record.finished;
    }

private:
    template <class T, class Write> void writeList(const QVector<T> &list, char bits, Write write)
    {
        stream << qint32(list.size());
        for (const T &item : list) {
            stream.writeRawData(&bits, 1);
            write(item);
        }
    }

    template <class T, class Read> void readList(QVector<T> &list, Read read)
    {
        qint32 count = 0;
        stream >> count;
        list.resize(count);
        for (T &item : list) {
            stream.skipRawData(1);
            read(item);
        }
    }

    QDataStream &stream;
};

/// A stream over a buffer that is written from its start again and again.
struct Out {
    QBuffer buffer;
    QDataStream stream;
    Out() : stream(&buffer) { buffer.open(QIODevice::WriteOnly); }
};

/// All records of the pool behind each other.
struct In {
    QBuffer buffer;
    QDataStream stream;
    std::vector<qint64> begins;

    In() : stream(&buffer)
    {
        buffer.open(QIODevice::ReadWrite);
        for (const KORVE_RecordData &record : recordPool()) {
            begins.push_back(buffer.pos());
            record.GetVersionSpecificBinaryWithoutValidation(stream);
        }
        buffer.seek(0);
    }
};

void writeOurs(benchmark::State &state)
{
    Out out;
    std::size_t n = 0;
    for (auto _ : state) {
        out.buffer.seek(0);
        recordPool()[n++ % poolSize].GetVersionSpecificBinaryWithoutValidation(out.stream);
    }
}

void writeFloor(benchmark::State &state)
{
    Out out;
    for (const PlainRecord &record : plainPool())
        BareStream(out.stream).write(record);
    require(out.buffer.data() == In().buffer.data(), "the bare stream writes what the object writes");
    std::size_t n = 0;
    for (auto _ : state) {
        out.buffer.seek(0);
        BareStream(out.stream).write(plainPool()[n++ % poolSize]);
    }
}

void readOurs(benchmark::State &state)
{
    In in;
    for (const KORVE_RecordData &record : recordPool()) {
        KORVE_RecordData back;
        back.SetVersionSpecificBinaryWithoutValidation(in.stream);
        require(back == record, "a compact record comes back");
    }
    std::size_t n = 0;
    for (auto _ : state) {
        in.buffer.seek(in.begins[n++ % poolSize]);
        KORVE_RecordData record;
        record.SetVersionSpecificBinaryWithoutValidation(in.stream);
    }
}

void readFloor(benchmark::State &state)
{
    In in;
    for (const PlainRecord &record : plainPool()) {
        PlainRecord back{};
        BareStream(in.stream).read(back);
        require(back == record, "the bare stream reads what the object wrote");
    }
    std::size_t n = 0;
    for (auto _ : state) {
        in.buffer.seek(in.begins[n++ % poolSize]);
        PlainRecord record{};
        BareStream(in.stream).read(record);
    }
}

BENCHMARK(writeOurs)->Name("compact.write/ours");
BENCHMARK(writeFloor)->Name("compact.write/floor");
BENCHMARK(readOurs)->Name("compact.read/ours");
BENCHMARK(readFloor)->Name("compact.read/floor");

} // namespace
