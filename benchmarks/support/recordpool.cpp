#include "benchmarks/support/recordpool.h"

using namespace KORVE_XML;

namespace
{

QString name(int seed)
{
    static const QStringList words = {QString::fromUtf8("Übersicht"), QString::fromUtf8("Сигнал"),
                                      QString::fromUtf8("σήμα"), QStringLiteral("A&B <west>"),
                                      QStringLiteral("\"north\""), QString::fromUtf8("Größe")};
    QString text = QStringLiteral("%1 %2 %3").arg(words[seed % 6], words[(seed / 6 + 1) % 6], QString::number(seed));
    while (text.size() < 18 + seed % 33)
        text += words[(seed + text.size()) % 6];
    return text.left(50);
}

template <class T, class Make> QVector<T> made(int count, Make make)
{
    QVector<T> list;
    for (int position = 0; position < count; ++position)
        list.append(make(position));
    return list;
}

} // namespace

PlainRecord makePlain(int n)
{
    const quint64 begin = 1772366400000000ULL + quint64(n) * 3600000000ULL;
    const auto note = [&](int position) { return PlainNote{begin + quint64(position) * 1000003ULL, name(n + position)}; };
    PlainRecord record{};
    record.recordID = QStringLiteral("HB145-%1-20260301-%2").arg(n % 4).arg(100000 + n);
    record.korveAddress = QStringLiteral("10.20.30.%1").arg(n);
    record.recordName = name(n);
    record.size = 4000000000ULL + quint64(n) * 977;
    record.startTime = begin;
    record.stopTime = begin + 600000000ULL;
    record.recordStatus = qint8(n % 9);
    record.dataFormat = qint8(n % 29);
    record.recordingLoopSize = quint64(n) << 20;
    record.stopPosition = record.size - 1;
    record.startPosition = quint64(n);
    record.dataRate = qint8(n % 16);
    record.deletable = n % 2;
    record.interface = qint8(n % 5);
    record.indexEntries = made<PlainIndexEntry>(2, [&](int position) {
        return PlainIndexEntry{quint64(position) * 1000000, begin + quint64(position), 98500000ULL + quint64(n), 25600000, 20000000};
    });
    record.bookmarks = made<PlainNote>(5, note);
    record.history = made<PlainNote>(3, note);
    record.pelinInfo = {begin, QStringLiteral("PELIN-%1").arg(n)};
    record.processingStates = made<PlainState>(2, [&](int position) {
        return PlainState{qint8((n + position) % 7), QStringLiteral("operator %1").arg(n), name(n + 7), begin};
    });
    record.linkedRecords = made<PlainNote>(2, [&](int position) {
        return PlainNote{begin, QStringLiteral("HB145-%1-20260228-%2").arg(position).arg(n)};
    });
    return record;
}

namespace
{

void addLists(const PlainRecord &plain, KORVE_RecordData &record)
{
    for (const PlainIndexEntry &entry : plain.indexEntries) {
        IndexEntry item;
        item.SetRecordOffset(entry.recordOffset);
        item.SetTimestamp(entry.timestamp);
        item.SetTunerFrequency(entry.tunerFrequency);
        item.SetSampleRate(entry.sampleRate);
        item.SetBandwidth(entry.bandwidth);
        record.AppendIndexEntry(item);
    }
    for (const PlainNote &note : plain.bookmarks) {
        BookmarkEntry item;
        item.SetTimestamp(note.timestamp);
        item.SetBookmark(note.text);
        record.AppendBookmarkEntry(item);
    }
    for (const PlainNote &note : plain.history) {
        HistoryEntry item;
        item.SetTimestamp(note.timestamp);
        item.SetHistoryEntry(note.text);
        record.AppendHistoryEntry(item);
    }
}

void addLinks(const PlainRecord &plain, KORVE_RecordData &record)
{
    record.GetPelinInfo().SetPelinID(plain.pelinInfo.text);
    record.GetPelinInfo().SetTimestamp(plain.pelinInfo.timestamp);
    for (const PlainState &state : plain.processingStates) {
        RecordingProcessingState item;
        item.SetState(RecordingProcessingState::State(state.state));
        item.SetUser(state.user);
        item.SetComment(state.comment);
        item.SetTimestamp(state.timestamp);
        record.AppendRecordingProcessingState(item);
    }
    for (const PlainNote &link : plain.linkedRecords) {
        LinkedRecord item;
        item.SetRecordID(link.text);
        item.SetTimestamp(link.timestamp);
        record.AppendLinkedRecord(item);
    }
}

} // namespace

KORVE_RecordData makeRecord(const PlainRecord &plain)
{
    KORVE_RecordData record;
    record.SetFinished(plain.finished);
    record.SetRecordID(plain.recordID);
    record.SetKorveAddress(plain.korveAddress);
    record.SetRecordName(plain.recordName);
    record.SetSize(plain.size);
    record.SetStartTime(plain.startTime);
    record.SetStopTime(plain.stopTime);
    record.SetRecordStatus(KORVE_RecordData::RecordStatus(plain.recordStatus));
    record.SetDataFormat(KORVE_RecordData::DataFormat(plain.dataFormat));
    record.SetRecordingLoopSize(plain.recordingLoopSize);
    record.SetStopPosition(plain.stopPosition);
    record.SetStartPosition(plain.startPosition);
    record.SetDataRate(KORVE_RecordData::DataRate(plain.dataRate));
    record.SetDeletable(plain.deletable);
    record.SetInterface(KORVE_RecordData::Interface(plain.interface));
    addLists(plain, record);
    addLinks(plain, record);
    return record;
}

const std::vector<PlainRecord> &plainPool()
{
    static const std::vector<PlainRecord> pool = [] {
        std::vector<PlainRecord> records;
        for (int n = 0; n < int(poolSize); ++n)
            records.push_back(makePlain(n));
        return records;
    }();
    return pool;
}

const std::vector<KORVE_RecordData> &recordPool()
{
    static const std::vector<KORVE_RecordData> pool = [] {
        std::vector<KORVE_RecordData> records;
        for (const PlainRecord &plain : plainPool())
            records.push_back(makeRecord(plain));
        return records;
    }();
    return pool;
}
