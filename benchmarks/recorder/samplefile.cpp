#include "benchmarks/recorder/samplefile.h"

#include "benchmarks/recorder/samplesink.h"
#include "installation/recorder/file.h"
#include "installation/recorder/recordingformat.h"

#include <random>

using namespace installation::recorder;

SampleFile::SampleFile()
{
    constexpr int step = 1 << 20;
    File file = File::create(path());
    std::mt19937_64 random(1);
    QByteArray bytes(step, Qt::Uninitialized);
    SampleSum all;
    for (quint64 done = 0; done < sizeBytes; done += step) {
        for (int i = 0; i < step; i += int(sizeof(quint64))) {
            const quint64 number = random();
            memcpy(bytes.data() + i, &number, sizeof number);
        }
        file.write(bytes);
        all.add(bytes.constData(), step);
    }
    sum = all.value();
}

Record SampleFile::record() const
{
    Record record = newRecording({}, 0);
    record.sizeBytes = record.stopPosition = sizeBytes;
    return record;
}
