#pragma once

#include "installation/recorder/sampleformat.h"

#include "idl/korve.hh"

namespace installation::recorder
{

class JsonMembers;

/// How samples lie in a file: one of every channel side by side, which counts as one here.
struct SampleLayout {
    SampleFormat format;
    unsigned channels = 1;

    quint64 sampleBytes() const { return quint64(format.bytes) * channels; }
    /// Of one number.
    unsigned wordBytes() const { return format.complex ? format.bytes / 2 : format.bytes; }
};

/// What "global" of SigMF says of it.
/// @throws RecorderError of the kind @p refusal, which names the member that is not known.
SampleLayout sampleLayout(const JsonMembers &global, TQ_KORVE::eKorveKind refusal);
/// Of a record.
/// @throws RecorderError (`ekRECORD_CORRUPTED`).
SampleLayout sampleLayout(const Record &record);

} // namespace installation::recorder
