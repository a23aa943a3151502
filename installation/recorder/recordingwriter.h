#pragma once

#include "installation/recorder/file.h"
#include "installation/recorder/samplelayout.h"

namespace installation::recorder
{

/// Puts the samples of a recording into its file as they come.
///
/// The file holds whole samples only. A loop grows as well, but gives the room of its beginning back to the disk; in
/// order, and as long as its loop, it becomes when it is closed.
/// Thread: one.  Errors: throws RecorderError; what went into the file before is good.
class RecordingWriter
{
public:
    RecordingWriter(const QString &path, const SampleLayout &layout, quint64 loopBytes);

    /// Takes the next @p size bytes, wherever a sample begins; @p swapped: numbers come with their last byte first.
    void write(const char *bytes, qint64 size, bool swapped);
    /// What was written is on the disk.
    void sync() { file.sync(); }
    /// Gives back the room of what lies before @p position.
    void release(quint64 position);
    /// What follows begins with a sample.
    void dropBegun() { waiting.clear(); }
    /// Drops what was not written to its end.
    void cut();
    /// Drops the last @p bytes, but no more than half of what is kept, for the room that they take. The file stays as long as
    /// it was: it must not become shorter than the record that is stored of it says.
    void giveUp(quint64 bytes);

    /// The first byte that is still to be kept.
    quint64 begin() const;
    /// Behind the last whole sample.
    quint64 end() const { return endPosition; }

private:
    const SampleLayout layout;
    const quint64 loopBytes;
    File file;
    QByteArray waiting; ///< the beginning of a sample
    quint64 endPosition = 0;
    quint64 releasedTo = 0;
    quint64 lostBefore = 0; ///< what lies there may have gone, wherever the end is
};

} // namespace installation::recorder
