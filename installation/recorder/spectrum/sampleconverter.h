#pragma once

#include "installation/recorder/samplelayout.h"

#include <cstddef>

namespace installation::recorder
{

/// Makes numbers of the samples of a file, of the first channel where there are several.
class SampleConverter
{
public:
    /// @throws RecorderError (`ekINVALID_VALUE`) for a format that it does not know.
    explicit SampleConverter(const SampleLayout &layout);

    /// Turns @p count samples into numbers, two of each where they are complex, and multiplies each with its weight.
    void convert(const char *samples, std::size_t count, const float *weights, float *numbers) const
    {
        function(samples, count, sampleBytes, weights, numbers);
    }
    /// What a number is to be multiplied with so that the greatest one of an integer format is 1.
    double unit() const { return greatest; }

    using Function = void (*)(const char *samples, std::size_t count, std::size_t sampleBytes, const float *weights,
                              float *numbers);

private:
    std::size_t sampleBytes = 0;
    Function function = nullptr;
    double greatest = 1;
};

} // namespace installation::recorder
