#pragma once

#include <QString>
#include <QVector>

/// The content of a record in plain structs: what the floors read and write.
struct PlainIndexEntry {
    quint64 recordOffset, timestamp, tunerFrequency, sampleRate, bandwidth;
    bool operator==(const PlainIndexEntry &) const = default;
};

struct PlainNote {
    quint64 timestamp;
    QString text;
    bool operator==(const PlainNote &) const = default;
};

struct PlainState {
    qint8 state;
    QString user, comment;
    quint64 timestamp;
    bool operator==(const PlainState &) const = default;
};

struct PlainRecord {
    bool finished;
    QString recordID, korveAddress, recordName;
    quint64 size, startTime, stopTime;
    qint8 recordStatus, dataFormat;
    quint64 recordingLoopSize, stopPosition, startPosition;
    qint8 dataRate;
    bool deletable;
    qint8 interface;
    QVector<PlainIndexEntry> indexEntries;
    QVector<PlainNote> bookmarks, history;
    PlainNote pelinInfo;
    QVector<PlainState> processingStates;
    QVector<PlainNote> linkedRecords;
    bool operator==(const PlainRecord &) const = default;
};
