#pragma once

#include "fuzz/support/require.h"
#include "installation/recorder/importsource.h"
#include "installation/recorder/recorddocument.h"

#include <algorithm>

/// Reads all samples as an import does, and finds no more behind them.
inline void requireSamples(const installation::recorder::ImportSource &source)
{
    constexpr quint64 stepBytes = 1 << 20;
    for (quint64 left = source.record.sizeBytes; left > 0;) {
        const QByteArray step = source.samples->read(static_cast<qint64>(std::min(stepBytes, left)));
        require(!step.isEmpty() && quint64(step.size()) <= left);
        left -= step.size();
    }
    require(source.samples->read(stepBytes).isEmpty());
}

/// The index goes from the first sample to behind the last, and never back in place or time.
inline void requireIndex(const installation::recorder::Record &record)
{
    const auto &index = record.index;
    require(index.size() >= 2 && index.first().offsetBytes == 0 && index.last().offsetBytes == record.sizeBytes);
    for (int i = 1; i < index.size(); ++i)
        require(index.at(i - 1).offsetBytes < index.at(i).offsetBytes &&
                index.at(i - 1).timestampUs <= index.at(i).timestampUs);
    require(record.startUs == index.first().timestampUs && record.stopUs == index.last().timestampUs);
}

/// What was accepted of a file of @p fileBytes can be imported, and is the same after a restart.
inline void requireImportable(const installation::recorder::ImportSource &source, quint64 fileBytes)
{
    using namespace installation::recorder;
    const Record &record = source.record;
    require(record.sizeBytes > 0 && record.sizeBytes <= fileBytes);
    requireSamples(source);
    requireIndex(record);
    const QByteArray document = toDocument(record);
    const Record again = fromDocument(document, QStringLiteral("record"));
    require(static_cast<const RecordSummary &>(again) == record && again.index == record.index);
    require(again.bookmarks == record.bookmarks && again.history == record.history);
    require(toDocument(again) == document);
}
