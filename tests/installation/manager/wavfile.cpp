#include "tests/installation/manager/wavfile.h"

#include <QDataStream>
#include <QDir>
#include <QFile>

#include <stdexcept>

QString writeWavFile(const QString &folder, const QString &name, int sampleCount)
{
    const QString path = QDir(folder).filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("cannot write " + path.toStdString());
    constexpr quint32 rate = 8000;
    const auto dataBytes = static_cast<quint32>(2 * sampleCount);
    QDataStream out(&file);
    out.setByteOrder(QDataStream::LittleEndian);
    out.writeRawData("RIFF", 4);
    out << quint32(36 + dataBytes);
    out.writeRawData("WAVEfmt ", 8);
    out << quint32(16) << quint16(1) << quint16(1) << rate << quint32(2 * rate) << quint16(2) << quint16(16);
    out.writeRawData("data", 4);
    out << dataBytes;
    for (int sample = 0; sample < sampleCount; ++sample)
        out << qint16(sample * 7);
    return path;
}
