#pragma once

#include "installation/samplesignal/carrier.h"

#include <QtEndian>

#include <random>
#include <span>

namespace installation::samplesignal
{

/// A sample as SigMF's `ci16_le` has it.
struct IqSample {
    qint16_le i;
    qint16_le q;
};
static_assert(sizeof(IqSample) == 4, "written as it lies in memory");

/// What a receiver of 20 MHz might hear: two signals over noise.
///
/// A generator: each fill() goes on where the one before ended. Equal seeds give equal samples.
class SampleSignal
{
public:
    static constexpr double sampleRateHz = 20e6;
    static constexpr double tunerFrequencyHz = 98e6;

    /// A carrier that a tone moves up and down.
    struct Modulated {
        static constexpr double offsetHz = 3e6; ///< from the tuner's frequency
        static constexpr double deviationHz = 75e3;
        static constexpr double toneHz = 1000;
    };
    /// A carrier that is there at the beginning of each period.
    struct Keyed {
        static constexpr double offsetHz = -5e6;
        static constexpr quint64 periodSamples = 400'000; // 20 ms
        static constexpr quint64 onSamples = 100'000;
    };

    explicit SampleSignal(quint32 seed);

    void fill(std::span<IqSample> samples);

private:
    Phasor modulated();
    Phasor keyed();
    Phasor noise();

    Carrier tone;
    Carrier modulatedCarrier;
    Carrier keyedCarrier;
    std::mt19937_64 random;
    quint64 position = 0;
};

} // namespace installation::samplesignal
