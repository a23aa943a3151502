#include "installation/samplesignal/samplesignal.h"

#include <gmock/gmock.h>

#include <complex>
#include <cstring>
#include <numbers>
#include <vector>

using namespace installation::samplesignal;

namespace
{

using Samples = std::vector<IqSample>;
constexpr std::size_t millisecond = 20'000; // whose discrete spectrum has a line at each kHz
constexpr double lineHz = 1000;
constexpr double quietHz = 7e6; // far from both signals
constexpr double clearly = 1000;

Samples samplesOf(quint32 seed, std::size_t count)
{
    Samples samples(count);
    SampleSignal(seed).fill(samples);
    return samples;
}

bool isEqual(const Samples &left, const Samples &right)
{
    return left.size() == right.size() && std::memcmp(left.data(), right.data(), left.size() * sizeof left[0]) == 0;
}

/// Of one line of the spectrum; all lines together have the mean power of the samples.
double power(std::span<const IqSample> samples, double offsetHz)
{
    const auto turn = std::polar(1.0, -2 * std::numbers::pi * offsetHz / SampleSignal::sampleRateHz);
    std::complex<double> against = 1;
    std::complex<double> sum = 0;
    for (const IqSample &sample : samples) {
        sum += against * std::complex<double>(sample.i, sample.q);
        against *= turn;
    }
    return std::norm(sum / static_cast<double>(samples.size()));
}

double bandPower(std::span<const IqSample> samples, double middleHz, double halfWidthHz)
{
    double sum = 0;
    for (double offsetHz = middleHz - halfWidthHz; offsetHz <= middleHz + halfWidthHz; offsetHz += lineHz)
        sum += power(samples, offsetHz);
    return sum;
}

TEST(SampleSignal, IsTheSameForTheSameSeed)
{
    EXPECT_TRUE(isEqual(samplesOf(1, 1000), samplesOf(1, 1000)));
    EXPECT_FALSE(isEqual(samplesOf(1, 1000), samplesOf(2, 1000)));
}

TEST(SampleSignal, GoesOnWhereItEnded)
{
    const Samples whole = samplesOf(1, 1000);
    Samples parts(1000);
    SampleSignal signal(1);
    signal.fill(std::span(parts).first(300));
    signal.fill(std::span(parts).subspan(300));
    EXPECT_TRUE(isEqual(parts, whole));
}

TEST(SampleSignal, HasAModulatedCarrier)
{
    using Modulated = SampleSignal::Modulated;
    const Samples samples = samplesOf(1, millisecond);
    const double halfWidthHz = Modulated::deviationHz + 2 * Modulated::toneHz;
    const double band = bandPower(samples, Modulated::offsetHz, halfWidthHz);
    EXPECT_GT(band, clearly * bandPower(samples, quietHz, halfWidthHz));
    EXPECT_LT(power(samples, Modulated::offsetHz), band / 10) << "all of it in one line: nothing modulates it";
}

TEST(SampleSignal, HasAKeyedCarrier)
{
    using Keyed = SampleSignal::Keyed;
    const Samples samples = samplesOf(1, Keyed::periodSamples + millisecond);
    const auto powerAt = [&](std::size_t position) {
        return power(std::span(samples).subspan(position, millisecond), Keyed::offsetHz);
    };
    const double off = powerAt(Keyed::onSamples);
    EXPECT_GT(powerAt(0), clearly * off);
    EXPECT_GT(powerAt(Keyed::onSamples - millisecond), clearly * off);
    EXPECT_LT(powerAt(Keyed::periodSamples - millisecond), powerAt(0) / clearly);
    EXPECT_GT(powerAt(Keyed::periodSamples), clearly * off);
}

TEST(SampleSignal, HasNoiseBelowBothSignals)
{
    const Samples samples = samplesOf(1, millisecond);
    const double noise = bandPower(samples, quietHz, 10e3);
    EXPECT_GT(noise, 0);
    EXPECT_GT(power(samples, SampleSignal::Keyed::offsetHz), clearly * noise);
}

} // namespace
