#pragma once

#include "apps/spectrum/spectrumreader.h"

#include <QImage>

namespace korvectl
{

/// The loudest of those of @p values that share one of @p columns columns.
float loudestOf(const QVector<float> &values, int column, int columns);

/// Spectra as colours: time goes down, frequency to the right; from dark, the usual noise, to bright, the loudest.
class SpectrumPicture
{
public:
    /// The picture has @p columns columns, for 0 as many as there are values. The loudest of those that share one is seen.
    explicit SpectrumPicture(const QVector<apps::SpectrumLine> &lines, int columns = 0);

    const QImage &image() const { return picture; }
    /// In dB of full scale: what is darkest, and what is brightest.
    float floorLevel() const { return floor; }
    float ceilingLevel() const { return ceiling; }

    /// From 0, dark, to 1, bright.
    static QRgb colour(double brightness);

private:
    QImage picture;
    float floor = 0;
    float ceiling = 0;
};

/// @p image in letters, each of them for one point above another; in colours of a terminal.
QString colouredBlocks(const QImage &image);
/// One letter for a point, in five shades.
QString shadedBlocks(const QImage &image);

} // namespace korvectl
