#pragma once

#include "idl/korve.hh"

#include <QString>
#include <QVector>

namespace korvectl
{

/// A file in the folder of a recorder that is no record, or not a whole one, and why.
struct RefusedFile {
    QString name;
    QString reason;

    /// Whether it is a part of a record, which is missing wherever records are listed.
    bool isOfRecord() const;
};

/// The files that the recorder refuses; none when it does not tell of any. Blocks.  Errors: what the ORB raises.
QVector<RefusedFile> refusedFiles(TQ_KORVE::IF_Control_ptr recorder);

/// The first of them as text: "a (why), b (why), c (why) and 3 more".
QString namesOf(const QVector<RefusedFile> &files);

/// The storage as text: "/srv/recordings: 81.6 GB of 270.5 GB are free".
QString wordsFor(const TQ_KORVE::struMASS_STORE_STATUS &storage);
/// A second of a narrow recording.
inline constexpr quint64 leastFreeBytes = 16'000'000;
/// Whether what is left is worth a recording.
bool hasRoom(const TQ_KORVE::struMASS_STORE_STATUS &storage);

} // namespace korvectl
