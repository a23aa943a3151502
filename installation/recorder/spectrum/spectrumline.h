#pragma once

#include "installation/recorder/spectrum/fouriertransform.h"
#include "installation/recorder/spectrum/sampleconverter.h"
#include "installation/recorder/spectrum/spectrumwindow.h"

#include <vector>

namespace installation::recorder
{

/// Makes levels over frequency of stretches of samples, all of one length.
///
/// Levels are in dBFS: a tone of full scale reads 0 at its frequency with every window. That is a complex number of
/// amplitude 1, or a real sine of amplitude 1, where 1 is the greatest number of an integer format.
/// Thread: one at a time.
class SpectrumLine
{
public:
    /// Of @p fftSize samples, at least 2.
    SpectrumLine(const SampleLayout &layout, SpectrumWindow window, unsigned fftSize);

    /// Levels in a line: fftSize for complex samples, half of it and one for real ones.
    unsigned valueCount() const;
    /// Bytes of samples that a line is made of.
    std::size_t stretchBytes() const { return bytes; }
    /// From @p samples to valueCount() levels, the lowest frequency first.
    void compute(const char *samples, float *levels);

private:
    const SampleConverter converter;
    FourierTransform fourier;
    const std::size_t bytes;
    std::vector<float> weights; ///< one for each number: the window, made so that levels need no further factor
};

} // namespace installation::recorder
