#pragma once

#include <cstddef>

namespace installation::recorder
{

/// What has no power at all, and what is no number, in dB.
constexpr float silenceDb = -300.0F;

/// The power of @p count complex numbers, times @p factor, in dB: exact to a thousandth, and never below silenceDb.
void toDecibels(const float *numbers, std::size_t count, float factor, float *levels);

} // namespace installation::recorder
