#pragma once

#include <QtGlobal>

#include <array>

namespace installation::samplesignal
{

/// A sample before all signals are added up.
struct Phasor {
    int i = 0;
    int q = 0;
};

/// A carrier of constant amplitude, made sample by sample.
///
/// Counts in whole numbers, so that it neither drifts nor differs between two runs.
class Carrier
{
public:
    /// What it turns by from one sample to the next; 2^32 is a whole turn, so a negative frequency is a large number.
    using Step = quint32;

    static Step stepOf(double frequencyHz, double sampleRateHz);

    explicit Carrier(int amplitude);

    Phasor next(Step step)
    {
        const Phasor sample = turn[phase >> phaseBitsUnseen];
        phase += step;
        return sample;
    }

private:
    static constexpr unsigned phaseBitsUnseen = 20;

    std::array<Phasor, 1u << (32 - phaseBitsUnseen)> turn;
    Step phase = 0;
};

} // namespace installation::samplesignal
