#include "installation/recorder/spectrum/spectrumwindow.h"

#include <cmath>
#include <numbers>

namespace installation::recorder
{

namespace
{

/// At @p place of the period, 0 to 1.
double kaiser(double place)
{
    const double side = 2 * place - 1;
    static const double middle = std::cyl_bessel_i(0.0, kaiserBeta);
    return std::cyl_bessel_i(0.0, kaiserBeta * std::sqrt(1 - side * side)) / middle;
}

double weight(SpectrumWindow window, double place)
{
    const double turn = 2 * std::numbers::pi * place;
    switch (window) {
    case SpectrumWindow::Rectangle:
        return 1;
    case SpectrumWindow::Hamming:
        return 0.54 - 0.46 * std::cos(turn);
    case SpectrumWindow::Hanning:
        return 0.5 - 0.5 * std::cos(turn);
    case SpectrumWindow::Kaiser:
        return kaiser(place);
    case SpectrumWindow::Blackman:
        return 0.42 - 0.5 * std::cos(turn) + 0.08 * std::cos(2 * turn);
    }
    return 1;
}

} // namespace

std::vector<float> windowWeights(SpectrumWindow window, unsigned size)
{
    std::vector<float> weights(size);
    for (unsigned i = 0; i < size; ++i)
        weights[i] = static_cast<float>(weight(window, double(i) / size));
    return weights;
}

} // namespace installation::recorder
