#include "installation/recorder/spectrum/decibels.h"

#include "installation/recorder/spectrum/vectorised.h"

#include <bit>
#include <cstdint>

namespace installation::recorder
{

namespace
{

constexpr float silence = 1e-30F;
constexpr float decibelsPerBit = 3.01029996F; // ten times the decimal logarithm of 2

/// Of a normal positive number. The standard library's takes ten times as long, as much as the transform itself.
KORVE_LOOP float decibelsOf(float power)
{
    constexpr std::int32_t rootOfHalf = 0x3f3504f3; // as bits: what is left of the exponent lies around 1
    const std::int32_t bits = std::bit_cast<std::int32_t>(power) - rootOfHalf;
    const float exponent = static_cast<float>(bits >> 23);
    const float x = std::bit_cast<float>((bits & 0x007fffff) + rootOfHalf) - 1;
    // Times x nearest to 10 lg(1 + x) there, by the exchange method: less than 0.0001 dB away, and without a division.
    const float quotient =
        4.34164617F + x * (-2.17090638F + x * (1.49499195F + x * (-1.14738717F + x * 0.548987199F)));
    return exponent * decibelsPerBit + x * quotient;
}

KORVE_LOOP void levelsOf(const float *__restrict numbers, std::size_t count, float factor, float *__restrict levels)
{
    for (std::size_t i = 0; i < count; ++i) {
        const float power = (numbers[2 * i] * numbers[2 * i] + numbers[2 * i + 1] * numbers[2 * i + 1]) * factor;
        const float level = decibelsOf(power);
        // The one choice, and the last step: GCC makes several of each that comes earlier. What is no number is not
        // greater either.
        levels[i] = power > silence ? level : silenceDb;
    }
}

KORVE_WIDE void levelsOfWide(const float *numbers, std::size_t count, float factor, float *levels)
{
    levelsOf(numbers, count, factor, levels);
}

void levelsOfAny(const float *numbers, std::size_t count, float factor, float *levels)
{
    levelsOf(numbers, count, factor, levels);
}

} // namespace

void toDecibels(const float *numbers, std::size_t count, float factor, float *levels)
{
    static const auto function = hasWideVectors() ? levelsOfWide : levelsOfAny;
    function(numbers, count, factor, levels);
}

} // namespace installation::recorder
