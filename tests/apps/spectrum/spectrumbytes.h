#pragma once

#include <QByteArray>
#include <QtEndian>

#include <initializer_list>

/// An overview spectrum as it comes over the network, written by the table of docs/spectrum.md.
struct SpectrumBytes {
    QByteArray magic = "KORVESPC";
    quint32 version = 1;
    quint32 fftSize = 4;
    quint32 window = 2;
    quint32 valuesPerLine = 4;
    quint64 lineCount = 2;
    quint64 startPosition = 400;
    quint64 stopPosition = 800;
    quint64 sampleRateHz = 20'000'000;
    quint64 tunerFrequencyHz = 98'500'000;

    template <typename Number> static void put(QByteArray &bytes, Number number)
    {
        char place[sizeof number];
        qToLittleEndian(number, place);
        bytes.append(place, sizeof number);
    }
    QByteArray head() const
    {
        QByteArray bytes = magic;
        for (const quint32 number : {version, fftSize, window, valuesPerLine})
            put(bytes, number);
        for (const quint64 number : {lineCount, startPosition, stopPosition, sampleRateHz, tunerFrequencyHz})
            put(bytes, number);
        return bytes;
    }
    static QByteArray line(quint64 number, quint64 position, std::initializer_list<float> levels)
    {
        QByteArray bytes;
        for (const quint64 value : {number, position, quint64(1'700'000'000'000'000) + number})
            put(bytes, value);
        for (const float level : levels)
            put(bytes, level);
        return bytes;
    }
    QByteArray whole() const { return head() + line(0, 400, {-1, -2, -3, 0.5F}) + line(1, 784, {-300, -4, 0, -6}); }
};
