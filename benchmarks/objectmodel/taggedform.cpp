#include "benchmarks/support/recordpool.h"

#include "benchmarks/objectmodel/record.pb.h"

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QDataStream>

using KORVE_XML::KORVE_RecordData;

namespace
{

constexpr int tag = 1;

void set(bench::Note &message, const PlainNote &note)
{
    message.set_timestamp(note.timestamp);
    message.set_text(note.text.toStdString());
}

void setLists(bench::Record &message, const PlainRecord &record)
{
    for (const PlainIndexEntry &entry : record.indexEntries) {
        bench::IndexEntry &item = *message.add_index_entry();
        item.set_record_offset(entry.recordOffset);
        item.set_timestamp(entry.timestamp);
        item.set_tuner_frequency(entry.tunerFrequency);
        item.set_sample_rate(entry.sampleRate);
        item.set_bandwidth(entry.bandwidth);
    }
    for (const PlainNote &note : record.bookmarks)
        set(*message.add_bookmark(), note);
    for (const PlainNote &note : record.history)
        set(*message.add_history(), note);
    set(*message.mutable_pelin_info(), record.pelinInfo);
    for (const PlainState &state : record.processingStates) {
        bench::State &item = *message.add_processing_state();
        item.set_state(KORVE_XML::RecordingProcessingState::GetStates().at(state.state).toStdString());
        item.set_user(state.user.toStdString());
        item.set_comment(state.comment.toStdString());
        item.set_timestamp(state.timestamp);
    }
    for (const PlainNote &link : record.linkedRecords)
        set(*message.add_linked_record(), link);
}

/// The same content; enumerations go as names, as in the tagged form.
bench::Record messageOf(const PlainRecord &record)
{
    bench::Record message;
    message.set_finished(record.finished);
    message.set_record_id(record.recordID.toStdString());
    message.set_korve_address(record.korveAddress.toStdString());
    message.set_record_name(record.recordName.toStdString());
    message.set_size(record.size);
    message.set_start_time(record.startTime);
    message.set_stop_time(record.stopTime);
    message.set_record_status(KORVE_RecordData::GetRecordStatuss().at(record.recordStatus).toStdString());
    message.set_data_format(KORVE_RecordData::GetDataFormats().at(record.dataFormat).toStdString());
    message.set_recording_loop_size(record.recordingLoopSize);
    message.set_stop_position(record.stopPosition);
    message.set_start_position(record.startPosition);
    message.set_data_rate(KORVE_RecordData::GetDataRates().at(record.dataRate).toStdString());
    message.set_deletable(record.deletable);
    message.set_interface(KORVE_RecordData::GetInterfaces().at(record.interface).toStdString());
    setLists(message, record);
    return message;
}

const std::vector<bench::Record> &messages()
{
    static const std::vector<bench::Record> pool = [] {
        std::vector<bench::Record> made;
        for (const PlainRecord &record : plainPool())
            made.push_back(messageOf(record));
        return made;
    }();
    return pool;
}

QByteArray taggedBytes(const KORVE_RecordData &record)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    require(record.GetBinary(out, tag, false), "a record is written");
    return bytes;
}

/// Reads a frame without its tag.
void readFrame(QDataStream &in, KORVE_RecordData &record)
{
    qint32 length = 0;
    in >> length;
    record.SetBinary(in, length);
}

void writeOurs(benchmark::State &state)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QDataStream out(&buffer);
    std::size_t n = 0;
    for (auto _ : state) {
        buffer.seek(0);
        benchmark::DoNotOptimize(recordPool()[n++ % poolSize].GetBinary(out, tag, true));
    }
}

void writeFloor(benchmark::State &state)
{
    std::string bytes;
    std::size_t n = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(messages()[n++ % poolSize].SerializeToString(&bytes));
}

void readOurs(benchmark::State &state)
{
    QBuffer buffer;
    std::vector<qint64> begins;
    for (const KORVE_RecordData &record : recordPool()) {
        begins.push_back(buffer.buffer().size());
        buffer.buffer() += taggedBytes(record);
    }
    buffer.open(QIODevice::ReadOnly);
    QDataStream in(&buffer);
    for (const KORVE_RecordData &record : recordPool()) {
        KORVE_RecordData back;
        readFrame(in, back);
        require(back == record, "a frame comes back");
    }
    std::size_t n = 0;
    for (auto _ : state) {
        buffer.seek(begins[n++ % poolSize]);
        KORVE_RecordData record;
        readFrame(in, record);
    }
}

void readFloor(benchmark::State &state)
{
    std::vector<std::string> bytes;
    for (const bench::Record &message : messages())
        bytes.push_back(message.SerializeAsString());
    std::size_t n = 0;
    for (auto _ : state) {
        bench::Record message;
        benchmark::DoNotOptimize(message.ParseFromString(bytes[n++ % poolSize]));
    }
}

BENCHMARK(writeOurs)->Name("tagged.write/ours");
BENCHMARK(writeFloor)->Name("tagged.write/floor");
BENCHMARK(readOurs)->Name("tagged.read/ours");
BENCHMARK(readFloor)->Name("tagged.read/floor");

} // namespace
