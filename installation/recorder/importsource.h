#pragma once

#include "installation/recorder/record.h"

#include <QByteArray>

namespace installation::recorder
{

/// A recording in a foreign file: where its samples are, and the record that it becomes.
struct ImportSource {
    QString samplesPath;
    quint64 firstByte = 0; ///< of the samples
    QByteArray sha512;     ///< what the samples must have as checksum, if anybody says
    Record record;         ///< complete but for the id
};

/// Looks at a WAV file, or at either file of a SigMF pair. Reads no samples. Blocks.
/// @throws RecorderError with the name of the file and the reason for which it is refused.
ImportSource inspectFile(const QString &path);

} // namespace installation::recorder
