#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/// The parts of a WAV file, written as the format has them.
struct WavFile {
    quint16 code = 1;
    quint16 channels = 1;
    quint32 sampleRateHz = 48000;
    quint16 bits = 16;
    QByteArray samples = QByteArray("\x01\x00\x02\x00\xff\xff\x1a\x0d", 8);
    QByteArray before = {}; ///< chunks between the RIFF head and the format
    quint16 frameBytes = 0; ///< from one sample to the next; 0: what they fill

    QByteArray bytes() const;
};

QByteArray chunk(const char *name, const QByteArray &content);
/// @p value in little-endian order.
template <typename Integer> QByteArray littleEndian(Integer value)
{
    QByteArray bytes;
    for (unsigned i = 0; i < sizeof value; ++i)
        bytes.append(static_cast<char>(quint64(value) >> (8 * i)));
    return bytes;
}

/// The meta data of a SigMF recording of 20 MHz at 98.5 MHz, begun 2023-11-14 22:13:20.25, with @p global over it.
QByteArray sigmfMeta(const QJsonObject &global = {}, const QJsonObject &capture = {});
