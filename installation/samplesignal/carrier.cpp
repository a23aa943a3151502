#include "installation/samplesignal/carrier.h"

#include <cmath>
#include <numbers>

namespace installation::samplesignal
{

Carrier::Step Carrier::stepOf(double frequencyHz, double sampleRateHz)
{
    constexpr double wholeTurn = 4294967296.0;
    return static_cast<Step>(std::llround(frequencyHz / sampleRateHz * wholeTurn));
}

Carrier::Carrier(int amplitude)
{
    for (std::size_t position = 0; position < turn.size(); ++position) {
        const double angle = 2 * std::numbers::pi * static_cast<double>(position) / static_cast<double>(turn.size());
        turn[position] = {static_cast<int>(std::lround(amplitude * std::cos(angle))),
                          static_cast<int>(std::lround(amplitude * std::sin(angle)))};
    }
}

} // namespace installation::samplesignal
