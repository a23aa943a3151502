#pragma once

#include <QString>

/// Writes @p sampleCount samples of 16 bits, one channel at 8 kHz, as the file @p name in @p folder; returns its path.
QString writeWavFile(const QString &folder, const QString &name, int sampleCount);
