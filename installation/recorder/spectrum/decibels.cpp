#include "installation/recorder/spectrum/decibels.h"

#include "installation/recorder/spectrum/vectorised.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace installation::recorder
{

namespace
{

constexpr std::size_t lanes = 8;
constexpr float silence = 1e-30F;
constexpr float decibelsPerBit = 3.01029996F; // ten times the decimal logarithm of 2

// GCC makes vectors of such a loop by itself, but with twice as many moves within them.
using Floats = float __attribute__((vector_size(lanes * sizeof(float))));
using Integers = std::int32_t __attribute__((vector_size(lanes * sizeof(std::int32_t))));

/// Takes normal positive numbers only. The standard library's takes ten times as long, as much as the transform itself.
KORVE_LOOP Floats decibelsOf(Floats power)
{
    constexpr std::int32_t rootOfHalf = 0x3f3504f3; // as bits: what is left of the exponent lies around 1
    const Integers bits = std::bit_cast<Integers>(power) - rootOfHalf;
    const auto exponent = __builtin_convertvector(bits >> 23, Floats);
    const Floats x = std::bit_cast<Floats>((bits & 0x007fffff) + rootOfHalf) - 1;
    // Times x nearest to 10 lg(1 + x) there, by the exchange method: less than 0.0001 dB away, and without a division.
    const Floats quotient =
        4.34164617F + x * (-2.17090638F + x * (1.49499195F + x * (-1.14738717F + x * 0.548987199F)));
    return exponent * decibelsPerBit + x * quotient;
}

KORVE_LOOP void levelsOfEight(const float *numbers, float factor, float *levels)
{
    Floats first;
    Floats second;
    std::memcpy(&first, numbers, sizeof first);
    std::memcpy(&second, numbers + lanes, sizeof second);
    first *= first;
    second *= second;
    // Moves within each half of a vector cost least; so the two in the middle change places at the end.
    const Floats power = (__builtin_shufflevector(first, second, 0, 2, 8, 10, 4, 6, 12, 14) +
                          __builtin_shufflevector(first, second, 1, 3, 9, 11, 5, 7, 13, 15)) *
                         factor;
    const Floats level = power > silence ? decibelsOf(power) : Floats{} + silenceDb; // what is no number is not greater
    const Floats inOrder = __builtin_shufflevector(level, level, 0, 1, 4, 5, 2, 3, 6, 7);
    std::memcpy(levels, &inOrder, sizeof inOrder);
}

KORVE_LOOP void levelsOf(const float *numbers, std::size_t count, float factor, float *levels)
{
    std::size_t done = 0;
    for (; done + lanes <= count; done += lanes)
        levelsOfEight(numbers + 2 * done, factor, levels + done);
    if (done == count)
        return;
    std::array<float, 2 * lanes> rest{};
    std::array<float, lanes> levelsOfRest;
    std::copy(numbers + 2 * done, numbers + 2 * count, rest.begin());
    levelsOfEight(rest.data(), factor, levelsOfRest.data());
    std::copy_n(levelsOfRest.begin(), count - done, levels + done);
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
