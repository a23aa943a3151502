#include "installation/recorder/spectrum/spectrumline.h"

#include "installation/recorder/spectrum/decibels.h"

#include <numeric>

namespace installation::recorder
{

namespace
{

/// So that a constant of @p unit has power 1.
std::vector<float> normalised(const std::vector<float> &window, double unit, unsigned numbersPerSample)
{
    const double factor = unit / std::accumulate(window.cbegin(), window.cend(), 0.0);
    std::vector<float> weights;
    weights.reserve(window.size() * numbersPerSample);
    for (const float weight : window)
        weights.insert(weights.end(), numbersPerSample, static_cast<float>(weight * factor));
    return weights;
}

} // namespace

SpectrumLine::SpectrumLine(const SampleLayout &layout, SpectrumWindow window, unsigned fftSize)
    : converter(layout), fourier(fftSize, layout.format.complex), bytes(fftSize * layout.sampleBytes()),
      weights(normalised(windowWeights(window, fftSize), converter.unit(), layout.format.complex ? 2 : 1))
{
}

unsigned SpectrumLine::valueCount() const
{
    return fourier.isComplex() ? fourier.size() : fourier.size() / 2 + 1;
}

void SpectrumLine::compute(const char *samples, float *levels)
{
    converter.convert(samples, fourier.size(), weights.data(), fourier.samples());
    const float *numbers = fourier.transform();
    const unsigned size = fourier.size();
    if (fourier.isComplex()) {
        const unsigned upper = (size + 1) / 2; // as many are not below 0
        toDecibels(numbers + 2 * std::size_t(upper), size - upper, 1, levels);
        toDecibels(numbers, upper, 1, levels + (size - upper));
        return;
    }
    // A sine has half of its amplitude at negative frequencies; what is constant, or alternates, has not.
    const unsigned last = size / 2;
    toDecibels(numbers, last + 1, 4, levels);
    toDecibels(numbers, 1, 1, levels);
    if (size % 2 == 0)
        toDecibels(numbers + 2 * std::size_t(last), 1, 1, levels + last);
}

} // namespace installation::recorder
