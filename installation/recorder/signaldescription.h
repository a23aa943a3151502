#pragma once

#include "installation/recorder/sampleformat.h"

#include <optional>

namespace installation::recorder
{

/// A stretch of samples for which the receiver stayed set in one way.
struct SignalCapture {
    quint64 firstSample = 0;
    quint64 tunerFrequencyHz = 0;
    std::optional<quint64> timeUs; ///< when its first sample was taken, if the file says so
};

/// What the header of a foreign file says of the signal in it.
struct SignalDescription {
    SampleFormat sampleFormat;
    DataFormat dataFormat = KORVE_XML::KORVE_RecordData::RAW;
    unsigned channels = 1;
    double sampleRateHz = 0;
    quint64 sizeBytes = 0;
    quint64 beginUs = 0; ///< unless a capture has a time
    QVector<SignalCapture> captures;

    quint64 frameBytes() const { return quint64(sampleFormat.bytes) * channels; }
};

/// The narrowest data-rate class that holds samples of such a rate.
/// @throws RecorderError when none does, or when it is no rate.
DataRate classOfSamples(double sampleRateHz, bool complex);
/// The record of such a signal, without id and name: its times, its data-rate class, and its index, with an entry at the
/// beginning, one where each capture begins, and one at the end.
/// @throws RecorderError when no class holds it, when there is no whole number of samples, or no sample at all, and when
/// the captures lie elsewhere or are not in their order.
Record describe(const SignalDescription &signal);

} // namespace installation::recorder
