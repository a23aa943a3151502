#pragma once

#include "installation/recorder/sampleformat.h"

namespace installation::recorder
{

/// What the header of a foreign file says of the signal in it.
struct SignalDescription {
    SampleFormat sampleFormat;
    DataFormat dataFormat = KORVE_XML::KORVE_RecordData::RAW;
    unsigned channels = 1;
    double sampleRateHz = 0;
    quint64 sizeBytes = 0;
    quint64 beginUs = 0;
    quint64 firstTunerFrequencyHz = 0;
    quint64 lastTunerFrequencyHz = 0;
};

/// The record of such a signal, without id and name: its times, its two index entries, at its begin and its end, and
/// the narrowest data-rate class that holds it.
/// @throws RecorderError when no class does, or when there is no whole number of samples, or no sample at all.
Record describe(const SignalDescription &signal);

} // namespace installation::recorder
