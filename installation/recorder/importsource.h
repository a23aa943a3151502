#pragma once

#include "installation/recorder/record.h"
#include "installation/recorder/samplereader.h"

#include <memory>

namespace installation::recorder
{

/// A recording in a foreign file: its samples, and the record that it becomes.
struct ImportSource {
    std::unique_ptr<SampleReader> samples;
    QByteArray sha512; ///< what the samples must have as checksum, if anybody says
    Record record;     ///< complete but for the id
};

/// Looks at a WAV file, or at either file of a SigMF pair, and leaves its samples open. Blocks.
/// @throws RecorderError with the reason for which it is refused; the caller says of which file.
ImportSource inspectFile(const QString &path);

} // namespace installation::recorder
