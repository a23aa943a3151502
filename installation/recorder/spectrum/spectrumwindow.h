#pragma once

#include <vector>

namespace installation::recorder
{

/// How the samples of a line fade in and out. Numbered as in the recorder's contract.
enum class SpectrumWindow { Rectangle, Hamming, Hanning, Kaiser, Blackman };

constexpr unsigned windowCount = 5;
/// Its side lobes lie some 90 dB below.
constexpr double kaiserBeta = 12.0;

/// The weights of @p size samples, at least 2, the greatest about 1: one period, so the last is not again the first.
std::vector<float> windowWeights(SpectrumWindow window, unsigned size);

} // namespace installation::recorder
