#include "installation/recorder/spectrum/decibels.h"

#include "installation/recorder/spectrum/vectorised.h"

#include <bit>
#include <cstdint>

namespace installation::recorder
{

namespace
{

constexpr float least = 1e-30F; // silence
constexpr float most = 1e38F;
constexpr float decibelsPerBit = 3.01029996F; // ten times the decimal logarithm of 2
constexpr float decibelsPerNeper = 4.34294482F;

/// Of a normal positive number. The standard library's takes ten times as long, as much as the transform itself.
KORVE_LOOP float decibelsOf(float power)
{
    constexpr std::int32_t rootOfHalf = 0x3f3504f3; // as bits: what is left of the exponent lies around 1
    const std::int32_t bits = std::bit_cast<std::int32_t>(power) - rootOfHalf;
    const float exponent = static_cast<float>(bits >> 23);
    const float mantissa = std::bit_cast<float>((bits & 0x007fffff) + rootOfHalf);
    const float s = (mantissa - 1) / (mantissa + 1); // ln m = 2 artanh s, of which four terms are enough
    const float square = s * s;
    const float series = 1 + square * (1.0F / 3 + square * (1.0F / 5 + square * (1.0F / 7)));
    return exponent * decibelsPerBit + 2 * s * series * decibelsPerNeper;
}

KORVE_LOOP void levelsOf(const float *__restrict numbers, std::size_t count, float factor, float *__restrict levels)
{
    for (std::size_t i = 0; i < count; ++i) {
        const float power = (numbers[2 * i] * numbers[2 * i] + numbers[2 * i + 1] * numbers[2 * i + 1]) * factor;
        const float bounded = power > least ? power : least; // what is no number is not greater either
        levels[i] = decibelsOf(bounded < most ? bounded : most);
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
