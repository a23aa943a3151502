#include "installation/samplesignal/samplesignal.h"

namespace installation::samplesignal
{

namespace
{

constexpr int toneAmplitude = 1 << 14;
constexpr int modulatedAmplitude = 8000;
constexpr int keyedAmplitude = 5000;
constexpr int noiseLimit = 4 * 255 / 2; // see noise()
static_assert(modulatedAmplitude + keyedAmplitude + noiseLimit < 32767, "all of them fit into 16 bits");

} // namespace

SampleSignal::SampleSignal(quint32 seed)
    : tone(toneAmplitude), modulatedCarrier(modulatedAmplitude), keyedCarrier(keyedAmplitude), random(seed)
{
}

void SampleSignal::fill(std::span<IqSample> samples)
{
    for (IqSample &sample : samples) {
        const Phasor parts[] = {modulated(), keyed(), noise()};
        Phasor sum;
        for (const Phasor &part : parts)
            sum = {sum.i + part.i, sum.q + part.q};
        sample.i = static_cast<qint16>(sum.i);
        sample.q = static_cast<qint16>(sum.q);
        ++position;
    }
}

Phasor SampleSignal::modulated()
{
    static const Carrier::Step toneStep = Carrier::stepOf(Modulated::toneHz, sampleRateHz);
    static const Carrier::Step middle = Carrier::stepOf(Modulated::offsetHz, sampleRateHz);
    static const Carrier::Step deviation = Carrier::stepOf(Modulated::deviationHz, sampleRateHz);
    const qint64 moved = qint64(deviation) * tone.next(toneStep).i / toneAmplitude;
    return modulatedCarrier.next(middle + static_cast<Carrier::Step>(moved));
}

Phasor SampleSignal::keyed()
{
    static const Carrier::Step step = Carrier::stepOf(Keyed::offsetHz, sampleRateHz);
    const Phasor carrier = keyedCarrier.next(step); // turns on while it is not heard
    return position % Keyed::periodSamples < Keyed::onSamples ? carrier : Phasor();
}

/// The sum of four even distributions comes near to a normal one; unlike the library's own, it is the same everywhere.
Phasor SampleSignal::noise()
{
    quint64 bits = random();
    const auto sumOfFourBytes = [&bits] {
        int sum = -noiseLimit;
        for (int count = 0; count < 4; ++count, bits >>= 8)
            sum += static_cast<int>(bits & 0xff);
        return sum;
    };
    const int i = sumOfFourBytes();
    return {i, sumOfFourBytes()};
}

} // namespace installation::samplesignal
