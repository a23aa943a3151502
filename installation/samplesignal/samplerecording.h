#pragma once

#include <QString>

#include <chrono>

namespace installation::samplesignal
{

/// Writes the sample signal as the SigMF pair @p base + ".sigmf-meta" and ".sigmf-data", with the checksum of its samples
/// and an annotation of each signal. It says to begin at noon (UTC) of 1 March 2026. Blocks; 80 MB for each second.
/// @throws std::runtime_error that names file and reason; that file is as it was, then.
void writeSampleRecording(const QString &base, std::chrono::milliseconds duration, quint32 seed);

} // namespace installation::samplesignal
