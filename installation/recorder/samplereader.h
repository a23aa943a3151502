#pragma once

#include "installation/recorder/file.h"

namespace installation::recorder
{

/// The samples of an open file, byte for byte, from the first to the last. Reading blocks.
class SampleReader
{
public:
    virtual ~SampleReader() = default;
    /// At most @p maximum bytes, which is a mebibyte or a whole number of samples; none at the end.
    virtual QByteArray read(qint64 maximum) = 0;
};

/// Of a file that holds nothing else.
class PlainSamples : public SampleReader
{
public:
    explicit PlainSamples(const QString &path) : file(File::openForReading(path)) {}
    QByteArray read(qint64 maximum) override { return file.read(maximum); }

private:
    File file;
};

} // namespace installation::recorder
