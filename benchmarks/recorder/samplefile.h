#pragma once

#include "installation/recorder/record.h"

#include <QTemporaryDir>

/// A file of samples with 256 MiB of numbers, and the record that it would be.
class SampleFile
{
public:
    static constexpr quint64 sizeBytes = 256ull << 20;

    SampleFile();

    QString path() const { return directory.filePath(QStringLiteral("samples")); }
    installation::recorder::Record record() const;
    /// What samplesink.h makes of all of it.
    quint64 checksum() const { return sum; }

private:
    QTemporaryDir directory;
    quint64 sum = 0;
};
