#include "installation/samplesignal/samplerecording.h"

#include "installation/recorder/importsource.h"
#include "installation/samplesignal/samplesignal.h"

#include <gmock/gmock.h>

#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>

using namespace installation::samplesignal;
using installation::recorder::ImportSource;
using KORVE_XML::KORVE_RecordData;

namespace
{

constexpr std::chrono::milliseconds duration{5};
constexpr quint64 samples = 100'000;

class Recording : public testing::Test
{
protected:
    QByteArray written(const char *name, quint32 seed) const
    {
        const QString base = directory.filePath(QLatin1String(name));
        writeSampleRecording(base, duration, seed);
        QFile file(base + QLatin1String(".sigmf-data"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    ImportSource inspected(const char *name) const
    {
        return installation::recorder::inspectFile(directory.filePath(QLatin1String(name)) +
                                                   QLatin1String(".sigmf-meta"));
    }

    QTemporaryDir directory;
};

TEST_F(Recording, IsTakenInAsAWidebandRecord)
{
    written("air", 1);
    const auto record = inspected("air").record;
    const auto beginMs = QDateTime(QDate(2026, 3, 1), QTime(12, 0), Qt::UTC).toMSecsSinceEpoch();
    EXPECT_EQ(record.name, QLatin1String("air"));
    EXPECT_EQ(record.rate, KORVE_RecordData::VUHF_20M);
    EXPECT_EQ(record.format, KORVE_RecordData::RAW);
    EXPECT_EQ(record.sizeBytes, samples * sizeof(IqSample));
    EXPECT_EQ(record.startUs, quint64(beginMs) * 1000);
    EXPECT_EQ(record.stopUs - record.startUs, 5000u);
    EXPECT_EQ(record.index.first().tunerFrequencyHz, 98'000'000u);
}

TEST_F(Recording, SaysWhatSamplesBelongToIt)
{
    const QByteArray bytes = written("air", 1);
    ASSERT_EQ(quint64(bytes.size()), samples * sizeof(IqSample));
    EXPECT_EQ(inspected("air").sha512, QCryptographicHash::hash(bytes, QCryptographicHash::Sha512));
}

TEST_F(Recording, PointsAtBothSignals)
{
    written("air", 1);
    const auto annotations = inspected("air").record.sigmf[QStringLiteral("annotations")].toArray();
    ASSERT_EQ(annotations.size(), 2);
    for (int position = 0; position < 2; ++position) {
        const auto annotation = annotations[position].toObject();
        const double lowerHz = annotation[QStringLiteral("core:freq_lower_edge")].toDouble();
        const double upperHz = annotation[QStringLiteral("core:freq_upper_edge")].toDouble();
        const double offsetHz = position == 0 ? SampleSignal::Modulated::offsetHz : SampleSignal::Keyed::offsetHz;
        EXPECT_DOUBLE_EQ((lowerHz + upperHz) / 2, SampleSignal::tunerFrequencyHz + offsetHz);
        EXPECT_EQ(annotation[QStringLiteral("core:sample_count")].toDouble(), samples);
    }
}

TEST_F(Recording, HasTheSameBytesForTheSameSeed)
{
    EXPECT_EQ(written("one", 7), written("two", 7));
    EXPECT_NE(written("one", 7), written("two", 8));
}

TEST_F(Recording, NamesTheFileThatCannotBeWritten)
{
    try {
        written("no such folder/air", 1);
        FAIL() << "written";
    } catch (const std::runtime_error &error) {
        EXPECT_THAT(error.what(), testing::HasSubstr("no such folder/air.sigmf-data: "));
    }
}

} // namespace
