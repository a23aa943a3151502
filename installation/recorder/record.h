#pragma once

#include "objectmodel/korve_recorddata.h"

#include <QJsonObject>
#include <QString>
#include <QVector>

namespace installation::recorder
{

using DataFormat = KORVE_XML::KORVE_RecordData::DataFormat;
using DataRate = KORVE_XML::KORVE_RecordData::DataRate;
using RecordStatus = KORVE_XML::KORVE_RecordData::RecordStatus;

/// How the receiver was set from one place of a record on.
struct IndexEntry {
    quint64 offsetBytes = 0;
    quint64 timestampUs = 0;
    quint64 tunerFrequencyHz = 0;
    quint64 sampleRateHz = 0;
    quint64 bandwidthHz = 0;

    bool operator==(const IndexEntry &) const = default;
};

/// A bookmark, or an entry of the history.
struct Note {
    quint64 timestampUs = 0;
    QString text;

    bool operator==(const Note &) const = default;
};

/// What a list of records shows. Times count from 1970, UTC; positions are bytes from the first sample on.
struct RecordSummary {
    QString id;
    QString name;
    quint64 sizeBytes = 0; ///< of the samples
    quint64 startUs = 0;
    quint64 stopUs = 0;
    RecordStatus status = KORVE_XML::KORVE_RecordData::IDLE;
    DataFormat format = KORVE_XML::KORVE_RecordData::RAW;
    DataRate rate = KORVE_XML::KORVE_RecordData::HF_20k;
    bool deletable = false;
    quint64 loopSizeBytes = 0; ///< of a recording that overwrites its own beginning, else 0
    quint64 startPosition = 0;
    quint64 stopPosition = 0;

    bool operator==(const RecordSummary &) const = default;
};

/// Everything known of a record.
struct Record : RecordSummary {
    QVector<IndexEntry> index;
    QVector<Note> bookmarks; ///< ascending, one at a time
    QVector<Note> history;   ///< in the order of writing, one at a time
    QJsonObject sigmf;       ///< the whole meta data it came with; what we know ourselves is written over it

    bool operator==(const Record &) const = default;
};

} // namespace installation::recorder
