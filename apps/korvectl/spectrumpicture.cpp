#include "apps/korvectl/spectrumpicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace korvectl
{

namespace
{

constexpr float silence = -200; // below what any sample format can tell from nothing

struct Stop {
    double at;
    double red, green, blue;
};

constexpr std::array stops{Stop{0.0, 0, 0, 24}, Stop{0.3, 40, 20, 140}, Stop{0.55, 200, 40, 100},
                           Stop{0.8, 250, 170, 30}, Stop{1.0, 255, 255, 220}};

int channel(double from, double to, double part)
{
    return static_cast<int>(std::lround(from + (to - from) * part));
}

/// A transform of nothing has no level at all.
float levelOf(float value)
{
    return std::isfinite(value) ? std::max(value, silence) : silence;
}

/// The level that half of the values stay below: what is there when nobody sends.
float usualLevel(const QVector<apps::SpectrumLine> &lines)
{
    std::vector<float> levels;
    for (const apps::SpectrumLine &line : lines)
        for (const float value : line.levels)
            levels.push_back(levelOf(value));
    if (levels.empty())
        return silence;
    const auto middle = levels.begin() + static_cast<std::ptrdiff_t>(levels.size() / 2);
    std::nth_element(levels.begin(), middle, levels.end());
    return *middle;
}

float loudestLevel(const QVector<apps::SpectrumLine> &lines)
{
    float loudest = silence;
    for (const apps::SpectrumLine &line : lines)
        loudest = std::max(loudest, loudestOf(line.levels, 0, 1));
    return loudest;
}

QString colourCode(const char *kind, QRgb colour)
{
    return QStringLiteral("\x1b[%1;2;%2;%3;%4m")
        .arg(QLatin1String(kind))
        .arg(qRed(colour))
        .arg(qGreen(colour))
        .arg(qBlue(colour));
}

} // namespace

float loudestOf(const QVector<float> &values, int column, int columns)
{
    const qint64 count = values.size();
    const auto first = static_cast<int>(count * column / columns);
    const auto last = std::max(first + 1, static_cast<int>(count * (column + 1) / columns));
    float loudest = silence;
    for (int position = first; position < last; ++position)
        loudest = std::max(loudest, levelOf(values[position]));
    return loudest;
}

SpectrumPicture::SpectrumPicture(const QVector<apps::SpectrumLine> &lines, int columns)
    : floor(usualLevel(lines)), ceiling(std::max(loudestLevel(lines), floor + 1))
{
    const int width = columns > 0 || lines.isEmpty() ? columns : lines.first().levels.size();
    picture = QImage(width, lines.size(), QImage::Format_RGB32);
    for (int row = 0; row < lines.size(); ++row)
        for (int column = 0; column < width; ++column) {
            const float level = loudestOf(lines[row].levels, column, width);
            picture.setPixel(column, row, colour(static_cast<double>(level - floor) / (ceiling - floor)));
        }
}

QRgb SpectrumPicture::colour(double brightness)
{
    const double at = std::clamp(brightness, 0.0, 1.0);
    const auto above = std::find_if(stops.begin() + 1, stops.end() - 1, [at](const Stop &stop) { return at <= stop.at; });
    const Stop &from = *(above - 1);
    const double part = (at - from.at) / (above->at - from.at);
    return qRgb(channel(from.red, above->red, part), channel(from.green, above->green, part),
                channel(from.blue, above->blue, part));
}

QString colouredBlocks(const QImage &image)
{
    QString text;
    for (int row = 0; row < image.height(); row += 2) {
        for (int column = 0; column < image.width(); ++column) {
            const QRgb lower = row + 1 < image.height() ? image.pixel(column, row + 1) : SpectrumPicture::colour(0);
            text += colourCode("38", image.pixel(column, row)) + colourCode("48", lower) + QChar(0x2580);
        }
        text += QLatin1String("\x1b[0m\n");
    }
    return text;
}

QString shadedBlocks(const QImage &image)
{
    const QString shades = QStringLiteral(" \u2591\u2592\u2593\u2588");
    QString text;
    for (int row = 0; row < image.height(); ++row) {
        for (int column = 0; column < image.width(); ++column)
            text += shades[std::min(shades.size() - 1, qGray(image.pixel(column, row)) * shades.size() / 255)];
        text += u'\n';
    }
    return text;
}

} // namespace korvectl
