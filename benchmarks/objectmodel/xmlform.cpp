#include "benchmarks/support/recordpool.h"

#include <benchmark/benchmark.h>

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

using KORVE_XML::KORVE_RecordData;

namespace
{

const std::vector<QString> &documents()
{
    static const std::vector<QString> texts = [] {
        std::vector<QString> made;
        for (const KORVE_RecordData &record : recordPool())
            made.push_back(record.GetXmlString());
        return made;
    }();
    return texts;
}

void readOurs(benchmark::State &state)
{
    for (std::size_t n = 0; n < poolSize; ++n) {
        KORVE_RecordData record;
        require(record.SetXmlString(documents()[n], false) && record == recordPool()[n], "a document comes back");
    }
    std::size_t n = 0;
    for (auto _ : state) {
        KORVE_RecordData record;
        benchmark::DoNotOptimize(record.SetXmlString(documents()[n++ % poolSize], false));
    }
}

void readFloor(benchmark::State &state)
{
    std::size_t n = 0;
    for (auto _ : state) {
        QXmlStreamReader reader(documents()[n++ % poolSize]);
        while (!reader.atEnd())
            benchmark::DoNotOptimize(reader.readNext());
    }
}

class BareWriter
{
public:
    explicit BareWriter(QString &text) : writer(&text) {}

    void write(const PlainRecord &record)
    {
        writer.writeStartElement(QStringLiteral("KORVE_RecordData"));
        writer.writeAttribute(QStringLiteral("Finished"), truth(record.finished));
        text(QStringLiteral("RecordID"), record.recordID);
        text(QStringLiteral("KorveAddress"), record.korveAddress);
        text(QStringLiteral("RecordName"), record.recordName);
        number(QStringLiteral("Size"), record.size);
        number(QStringLiteral("StartTime"), record.startTime);
        number(QStringLiteral("StopTime"), record.stopTime);
        literal(QStringLiteral("RecordStatus"), statuses, record.recordStatus);
        literal(QStringLiteral("DataFormat"), formats, record.dataFormat);
        number(QStringLiteral("RecordingLoopSize"), record.recordingLoopSize);
        number(QStringLiteral("StopPosition"), record.stopPosition);
        number(QStringLiteral("StartPosition"), record.startPosition);
        literal(QStringLiteral("DataRate"), rates, record.dataRate);
        text(QStringLiteral("Deletable"), truth(record.deletable));
        literal(QStringLiteral("Interface"), interfaces, record.interface);
        writeLists(record);
        writer.writeEndElement();
    }

private:
    void writeLists(const PlainRecord &record)
    {
        for (const PlainIndexEntry &entry : record.indexEntries)
            write(entry);
        for (const PlainNote &note : record.bookmarks)
            write(QStringLiteral("BookmarkEntry"), QStringLiteral("Bookmark"), note, true);
        for (const PlainNote &note : record.history)
            write(QStringLiteral("HistoryEntry"), QStringLiteral("HistoryEntry"), note, true);
        write(QStringLiteral("PelinInfo"), QStringLiteral("PelinID"), record.pelinInfo, false);
        for (const PlainState &state : record.processingStates)
            write(state);
        for (const PlainNote &link : record.linkedRecords)
            write(QStringLiteral("LinkedRecord"), QStringLiteral("RecordID"), link, false);
    }

    void write(const PlainIndexEntry &entry)
    {
        writer.writeStartElement(QStringLiteral("IndexEntry"));
        number(QStringLiteral("RecordOffset"), entry.recordOffset);
        number(QStringLiteral("Timestamp"), entry.timestamp);
        number(QStringLiteral("TunerFrequency"), entry.tunerFrequency);
        number(QStringLiteral("SampleRate"), entry.sampleRate);
        number(QStringLiteral("Bandwidth"), entry.bandwidth);
        writer.writeEndElement();
    }

    void write(const QString &element, const QString &child, const PlainNote &note, bool timeFirst)
    {
        writer.writeStartElement(element);
        if (timeFirst)
            number(QStringLiteral("Timestamp"), note.timestamp);
        text(child, note.text);
        if (!timeFirst)
            number(QStringLiteral("Timestamp"), note.timestamp);
        writer.writeEndElement();
    }

    void write(const PlainState &state)
    {
        writer.writeStartElement(QStringLiteral("RecordingProcessingState"));
        literal(QStringLiteral("State"), states, state.state);
        text(QStringLiteral("User"), state.user);
        text(QStringLiteral("Comment"), state.comment);
        number(QStringLiteral("Timestamp"), state.timestamp);
        writer.writeEndElement();
    }

    static QString truth(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }
    void text(const QString &name, const QString &value) { writer.writeTextElement(name, value); }
    void number(const QString &name, quint64 value) { text(name, QString::number(value)); }
    void literal(const QString &name, const QStringList &list, int value) { text(name, list.at(value)); }

    QXmlStreamWriter writer;
    const QStringList statuses = KORVE_RecordData::GetRecordStatuss();
    const QStringList formats = KORVE_RecordData::GetDataFormats();
    const QStringList rates = KORVE_RecordData::GetDataRates();
    const QStringList interfaces = KORVE_RecordData::GetInterfaces();
    const QStringList states = KORVE_XML::RecordingProcessingState::GetStates();
};

void writeOurs(benchmark::State &state)
{
    std::size_t n = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(recordPool()[n++ % poolSize].GetXmlString());
}

void writeFloor(benchmark::State &state)
{
    const auto written = [](std::size_t n) {
        QString text;
        BareWriter(text).write(plainPool()[n % poolSize]);
        return text;
    };
    for (std::size_t n = 0; n < poolSize; ++n)
        require(written(n) == documents()[n], "the bare writer writes what the object writes");
    std::size_t n = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(written(n++));
}

BENCHMARK(readOurs)->Name("xml.read/ours");
BENCHMARK(readFloor)->Name("xml.read/floor");
BENCHMARK(writeOurs)->Name("xml.write/ours");
BENCHMARK(writeFloor)->Name("xml.write/floor");

} // namespace
