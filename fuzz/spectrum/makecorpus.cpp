#include "tests/apps/spectrum/spectrumbytes.h"

#include <QDir>
#include <QFile>

#include <cstdio>

namespace
{

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

/// Writes whole spectra as first inputs: makespectrumcorpus FOLDER
int main(int argc, char **argv)
{
    if (argc != 2) {
        fprintf(stderr, "usage: makespectrumcorpus FOLDER\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]) + QStringLiteral("/fuzz_spectrum/");
    QDir().mkpath(folder);
    SpectrumBytes real;
    real.valuesPerLine = 3;
    real.lineCount = 1;
    const bool isWritten =
        write(folder + QStringLiteral("complex"), QByteArray(1, '\x07') + SpectrumBytes().whole()) &&
        write(folder + QStringLiteral("real"),
              QByteArray(1, '\0') + real.head() + SpectrumBytes::line(0, 400, {-1, -2, 0})) &&
        write(folder + QStringLiteral("cut"), QByteArray(1, '\x3f') + SpectrumBytes().whole().chopped(1)) &&
        write(folder + QStringLiteral("behind"), QByteArray(1, '\xff') + SpectrumBytes().whole() + "x");
    return isWritten ? 0 : 1;
}
