#include "installation/recorder/filetime.h"
#include "installation/recorder/importsource.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/sampleformat.h"
#include "tests/installation/recorder/recordingfiles.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

using namespace installation::recorder;
using KORVE_XML::KORVE_RecordData;

namespace
{

constexpr quint64 beginUs = 1'700'000'000'250'000; // of the SigMF recording

class Inspection : public testing::Test
{
protected:
    QString wav(const QByteArray &bytes) const
    {
        const QString path = directory.filePath("tone.of.day.wav");
        writeFile(path, bytes);
        QFile file(path);
        file.open(QIODevice::ReadWrite);
        file.setFileTime(QDateTime::fromSecsSinceEpoch(1'600'000'000), QFileDevice::FileModificationTime);
        return path;
    }
    QString sigmf(const QByteArray &meta, const QByteArray &samples = QByteArray(4000, 's')) const
    {
        writeFile(directory.filePath("air.sigmf-data"), samples);
        writeFile(directory.filePath("air.sigmf-meta"), meta);
        return directory.filePath("air.sigmf-meta");
    }
    std::string refusalOf(const QString &path) const
    {
        try {
            inspectFile(path);
        } catch (const RecorderError &error) {
            return error.what();
        }
        return "taken";
    }

    QTemporaryDir directory;
};

TEST_F(Inspection, OfAWavFileFindsItsSamples)
{
    const ImportSource source = inspectFile(wav(WavFile{}.bytes()));
    EXPECT_EQ(source.samples->read(100), WavFile{}.samples);
    EXPECT_TRUE(source.samples->read(100).isEmpty());
    const Record &record = source.record;
    EXPECT_EQ(record.name, "tone.of.day");
    EXPECT_EQ(record.sizeBytes, 8u);
    EXPECT_EQ(record.startUs, 1'600'000'000'000'000u);
    EXPECT_EQ(record.stopUs, record.startUs + 83); // 4 samples at 48 kHz
    EXPECT_EQ(record.stopPosition, 8u);
    EXPECT_EQ(record.format, KORVE_RecordData::DIGITAL_AUDIO);
    EXPECT_EQ(record.rate, KORVE_RecordData::VUHF_300k);
    EXPECT_EQ(record.status, KORVE_RecordData::IDLE);
    EXPECT_FALSE(record.deletable);
    EXPECT_EQ(record.index,
              (QVector<IndexEntry>{{0, record.startUs, 0, 48000, 24000}, {8, record.stopUs, 0, 48000, 24000}}));
    EXPECT_EQ(record.sigmf["global"].toObject()["core:datatype"].toString(), "ri16_le");
    EXPECT_EQ(record.sigmf["captures"].toArray()[0].toObject()["core:datetime"].toString(),
              "2020-09-13T12:26:40.000000Z");
}

TEST_F(Inspection, OfAWavFilePassesOtherChunks)
{
    WavFile file;
    file.before = chunk("LIST", "odd") + chunk("junk", QByteArray(100, 'j'));
    for (const QByteArray &behind : {chunk("LIST", "behind"), QByteArray("x")}) // a byte is less than a sample
        EXPECT_EQ(inspectFile(wav(file.bytes() + behind)).samples->read(100), file.samples);
}

TEST_F(Inspection, OfAnExtensibleWavFileLooksBehindTheCode)
{
    QByteArray bytes = WavFile{}.bytes();
    const QByteArray format = bytes.mid(20, 16).replace(0, 2, "\xfe\xff") + littleEndian(quint16(22)) +
                              littleEndian(quint16(16)) + littleEndian(quint32(4)) +
                              QByteArray::fromHex("0100000000001000800000aa00389b71"); // what PCM is called there
    bytes = bytes.left(12) + chunk("fmt ", format) + bytes.mid(36);
    EXPECT_EQ(inspectFile(wav(bytes)).record.sigmf["global"].toObject()["core:datatype"].toString(), "ri16_le");
}

/// A file whose size of samples stands in a chunk of its own.
QByteArray longWav(quint64 sizeBytes)
{
    WavFile file;
    file.before = chunk("ds64", littleEndian(quint64(0)) + littleEndian(sizeBytes) + QByteArray(12, 0));
    QByteArray bytes = file.bytes();
    return bytes.replace(0, 4, "RF64").replace(bytes.indexOf("data") + 4, 4, "\xff\xff\xff\xff");
}

TEST_F(Inspection, OfALongWavFileTakesTheLongSize)
{
    const ImportSource source = inspectFile(wav(longWav(6)));
    EXPECT_EQ(source.record.sizeBytes, 6u);
    EXPECT_EQ(source.samples->read(100), WavFile{}.samples.left(6));
}

TEST_F(Inspection, OfALongWavFileRefusesItWhenSamplesAreMissing)
{
    EXPECT_NE(refusalOf(wav(longWav(10))).find("8 of 10 bytes of samples are there"), std::string::npos);
    EXPECT_NE(refusalOf(wav(longWav(quint64(-2)))).find("incomplete"), std::string::npos);
}

TEST_F(Inspection, OfAWavFileRefusesASizeThatNobodyKnew)
{
    QByteArray bytes = WavFile{}.bytes();
    bytes.replace(40, 4, "\xff\xff\xff\xff");
    EXPECT_NE(refusalOf(wav(bytes)).find("does not say how many"), std::string::npos);
}

TEST_F(Inspection, OfAWavFileRefusesItWhenCutAnywhere)
{
    const QByteArray whole = WavFile{}.bytes();
    for (int length = 0; length < whole.size(); ++length)
        EXPECT_NE(refusalOf(wav(whole.left(length))), "taken") << length;
}

struct WavCase {
    const char *name;
    WavFile file;
    const char *outcome; ///< the data type, or words of the refusal
};

class WavTable : public Inspection, public testing::WithParamInterface<WavCase>
{
};

TEST_P(WavTable, HasTheFormatOrRefusesTheFile)
{
    const QString path = wav(GetParam().file.bytes());
    const std::string refusal = refusalOf(path);
    if (refusal == "taken")
        EXPECT_EQ(inspectFile(path).record.sigmf["global"].toObject()["core:datatype"].toString(), GetParam().outcome);
    else
        EXPECT_NE(refusal.find(GetParam().outcome), std::string::npos) << refusal;
}

INSTANTIATE_TEST_SUITE_P(
    Formats, WavTable,
    testing::Values(WavCase{"Bytes", {.bits = 8}, "ru8"}, WavCase{"Shorts", {.bits = 16}, "ri16_le"},
                    WavCase{"Stereo", {.channels = 2, .bits = 16}, "ri16_le"}, WavCase{"Longs", {.bits = 32}, "ri32_le"},
                    WavCase{"Floats", {.code = 3, .bits = 32}, "rf32_le"},
                    WavCase{"Doubles", {.code = 3, .bits = 64}, "rf64_le"},
                    WavCase{"ThreeBytes", {.bits = 24}, "24 bit PCM are not known"},
                    WavCase{"Companded", {.code = 6, .bits = 8}, "A-Law are not known"},
                    WavCase{"OfAnUnknownCode", {.code = 0x4711, .bits = 8}, "Malformed 'fmt ' chunk"},
                    WavCase{"HalfASample", {.samples = QByteArray(7, 's')}, "no whole number of samples"},
                    WavCase{"NoSamples", {.samples = {}}, "holds no samples"},
                    WavCase{"NoChannels", {.channels = 0}, "Channel count is zero"},
                    WavCase{"TwelveBits", {.bits = 12}, "samples of 12 bits are not known"},
                    WavCase{"TwentyBits", {.bits = 20}, "samples of 20 bits are not known"},
                    WavCase{"BytesBetween", {.frameBytes = 3}, "1 samples of 16 bits do not fill the 3 bytes"},
                    WavCase{"FewerBytes", {.channels = 2, .frameBytes = 3}, "2 samples of 16 bits do not fill"},
                    WavCase{"NoRate", {.sampleRateHz = 0}, "a sample rate of 0 Hz is impossible"},
                    WavCase{"FarTooFast", {.sampleRateHz = 4'000'000'000}, "above that of every data-rate class"}),
    [](const auto &info) { return std::string(info.param.name); });

TEST_F(Inspection, OfASigmfPairTakesWhatItSays)
{
    const ImportSource source = inspectFile(sigmf(sigmfMeta()));
    EXPECT_EQ(source.samples->read(5000), QByteArray(4000, 's'));
    const Record &record = source.record;
    EXPECT_EQ(record.name, "air");
    EXPECT_EQ(record.sizeBytes, 4000u);
    EXPECT_EQ(record.startUs, beginUs);
    EXPECT_EQ(record.stopUs, beginUs + 50); // 1000 samples at 20 MHz
    EXPECT_EQ(record.format, KORVE_RecordData::RAW);
    EXPECT_EQ(record.rate, KORVE_RecordData::VUHF_20M);
    EXPECT_EQ(record.index, (QVector<IndexEntry>{{0, beginUs, 98'500'000, 20'000'000, 20'000'000},
                                                 {4000, beginUs + 50, 98'500'000, 20'000'000, 20'000'000}}));
    EXPECT_EQ(record.sigmf["global"].toObject()["other:antenna"].toString(), "loop");
}

TEST_F(Inspection, OfASigmfPairStartsFromEitherFile)
{
    sigmf(sigmfMeta());
    EXPECT_EQ(inspectFile(directory.filePath("air.sigmf-data")).record,
              inspectFile(directory.filePath("air.sigmf-meta")).record);
}

/// The recording, which has 1000 samples at 20 MHz, with these captures.
QByteArray withCaptures(const QJsonArray &captures, const QJsonObject &global = {})
{
    QJsonObject document = QJsonDocument::fromJson(sigmfMeta(global)).object();
    document["captures"] = captures;
    return QJsonDocument(document).toJson();
}

QJsonObject capture(double start, double frequency, const char *time = nullptr)
{
    QJsonObject object{{"core:sample_start", start}, {"core:frequency", frequency}};
    if (time)
        object["core:datetime"] = time;
    return object;
}

TEST_F(Inspection, OfASigmfPairHasAnIndexEntryWhereTheFrequencyChanges)
{
    const QJsonArray captures{capture(0, 98.5e6, "2023-11-14T22:13:20.25Z"), capture(400, 100e6),
                              capture(600, 101e6, "2023-11-14T22:13:21.25Z"), capture(800, 102e6)};
    const Record record = inspectFile(sigmf(withCaptures(captures))).record;
    const QVector<IndexEntry> expected{{0, beginUs, 98'500'000, 20'000'000, 20'000'000},
                                       {1600, beginUs + 20, 100'000'000, 20'000'000, 20'000'000},
                                       {2400, beginUs + 1'000'000, 101'000'000, 20'000'000, 20'000'000},
                                       {3200, beginUs + 1'000'010, 102'000'000, 20'000'000, 20'000'000},
                                       {4000, beginUs + 1'000'020, 102'000'000, 20'000'000, 20'000'000}};
    EXPECT_EQ(record.index, expected);
    EXPECT_EQ(record.startUs, beginUs);
    EXPECT_EQ(record.stopUs, beginUs + 1'000'020);
}

TEST_F(Inspection, OfASigmfPairCountsBackFromTheFirstTimeThatIsKnown)
{
    const QJsonArray captures{capture(200, 98.5e6), capture(400, 100e6, "2023-11-14T22:13:20.25Z")};
    const Record record = inspectFile(sigmf(withCaptures(captures))).record;
    const QVector<IndexEntry> expected{{0, beginUs - 20, 0, 20'000'000, 20'000'000},
                                       {800, beginUs - 10, 98'500'000, 20'000'000, 20'000'000},
                                       {1600, beginUs, 100'000'000, 20'000'000, 20'000'000},
                                       {4000, beginUs + 30, 100'000'000, 20'000'000, 20'000'000}};
    EXPECT_EQ(record.index, expected);
}

TEST_F(Inspection, OfALaterPartOfASigmfRecordingCountsFromItsFirstSample)
{
    const QJsonObject global{{"core:offset", 5000}};
    const QJsonArray captures{capture(5000, 98.5e6), capture(5400, 100e6)};
    const Record record = inspectFile(sigmf(withCaptures(captures, global))).record;
    ASSERT_EQ(record.index.size(), 3);
    EXPECT_EQ(record.index.at(1).offsetBytes, 1600u);
    EXPECT_NE(refusalOf(sigmf(withCaptures({capture(4999, 1)}, global))).find("before the first sample, which is 5000"),
              std::string::npos);
}

struct CapturesCase {
    const char *name;
    QJsonArray captures;
    const char *reason;
};

class MisplacedCaptures : public Inspection, public testing::WithParamInterface<CapturesCase>
{
};

TEST_P(MisplacedCaptures, AreRefusedWithTheReason)
{
    const std::string refusal = refusalOf(sigmf(withCaptures(GetParam().captures)));
    EXPECT_NE(refusal.find(GetParam().reason), std::string::npos) << refusal;
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, MisplacedCaptures,
    testing::Values(
        CapturesCase{"Negative", {capture(-1, 1)}, "\"core:sample_start\" is -1, which counts no samples"},
        CapturesCase{"AFraction", {capture(1.5, 1)}, "\"core:sample_start\" is 1.5, which counts no samples"},
        CapturesCase{"BeyondExactNumbers", {capture(9007199254740994.0, 1)}, "is 9007199254740994, which counts no samples"},
        CapturesCase{"Countless", {capture(1e300, 1)}, "which counts no samples"},
        CapturesCase{"Behind", {capture(0, 1), capture(1000, 2)}, "begins at sample 1000, behind the last of 1000"},
        CapturesCase{"Descending", {capture(0, 1), capture(9, 2), capture(8, 3)}, "at sample 8 comes after that at sample 9"},
        CapturesCase{"Placeless", {capture(0, 1), QJsonObject{{"core:frequency", 2}}}, "\"core:sample_start\" is missing"},
        CapturesCase{"BackInTime",
                     {capture(0, 1, "2023-11-14T22:13:20Z"), capture(9, 2, "2023-11-14T22:13:19Z")},
                     "at sample 9 is earlier than what lies before it"}),
    [](const auto &info) { return std::string(info.param.name); });

TEST_F(Inspection, OfASigmfPairWithoutTimeTakesThatOfTheFile)
{
    const Record record = inspectFile(sigmf(sigmfMeta({}, {{"core:datetime", QJsonValue::Null}}))).record;
    EXPECT_EQ(record.startUs, modificationTimeUs(directory.filePath("air.sigmf-data")));
}

struct ClassCase {
    const char *name;
    const char *datatype;
    double sampleRateHz;
    DataRate rate;
};

class ClassOfASignal : public Inspection, public testing::WithParamInterface<ClassCase>
{
};

TEST_P(ClassOfASignal, IsTheNarrowestThatHoldsIt)
{
    const auto &[name, datatype, sampleRateHz, rate] = GetParam();
    const QJsonObject global{{"core:datatype", datatype}, {"core:sample_rate", sampleRateHz}};
    EXPECT_EQ(inspectFile(sigmf(sigmfMeta(global))).record.rate, rate);
}

INSTANTIATE_TEST_SUITE_P(Bandwidths, ClassOfASignal,
                         testing::Values(ClassCase{"Narrow", "ci16_le", 8000, KORVE_RecordData::VUHF_200k},
                                         ClassCase{"AtTheEnd", "cu8", 20000, KORVE_RecordData::VUHF_200k},
                                         ClassCase{"RealIsHalf", "ri16_be", 40000, KORVE_RecordData::VUHF_200k},
                                         ClassCase{"Above", "ci16_le", 20001, KORVE_RecordData::VUHF_300k},
                                         ClassCase{"NoClassOfTheWire", "cf32_le", 8e6, KORVE_RecordData::VUHF_10M},
                                         ClassCase{"Wide", "cf32_le", 25.6e6, KORVE_RecordData::VUHF_40M},
                                         ClassCase{"Widest", "cf64_be", 500e6, KORVE_RecordData::VUHF_500M}),
                         [](const auto &info) { return std::string(info.param.name); });

struct RefusalCase {
    const char *name;
    QJsonObject global;
    QJsonObject capture;
    const char *reason;
};

class ForeignSigmf : public Inspection, public testing::WithParamInterface<RefusalCase>
{
};

TEST_P(ForeignSigmf, IsRefusedWithTheReason)
{
    const std::string refusal = refusalOf(sigmf(sigmfMeta(GetParam().global, GetParam().capture)));
    EXPECT_NE(refusal.find(GetParam().reason), std::string::npos) << refusal;
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ForeignSigmf,
    testing::Values(
        RefusalCase{"NoDatatype", {{"core:datatype", QJsonValue::Null}}, {}, "\"core:datatype\" is missing"},
        RefusalCase{"UnknownDatatype", {{"core:datatype", "ci12_le"}}, {}, "\"ci12_le\", which is not known"},
        RefusalCase{"DatatypeWithoutOrder", {{"core:datatype", "ci16"}}, {}, "\"ci16\", which is not known"},
        RefusalCase{"NoRate", {{"core:sample_rate", QJsonValue::Null}}, {}, "\"core:sample_rate\" is missing"},
        RefusalCase{"RateIsText", {{"core:sample_rate", "fast"}}, {}, "not a number"},
        RefusalCase{"RateIsNegative", {{"core:sample_rate", -1}}, {}, "a sample rate of -1 Hz"},
        RefusalCase{"RateIsNearlyNothing", {{"core:sample_rate", 1e-300}}, {}, "last for ages"},
        RefusalCase{"TooWide", {{"core:sample_rate", 1e9}}, {}, "above that of every data-rate class"},
        RefusalCase{"FarTooWide", {{"core:sample_rate", 1e300}}, {}, "above that of every data-rate class"},
        RefusalCase{"HalfASample", {{"core:num_channels", 3}}, {}, "no whole number of samples"},
        RefusalCase{"ChannelsAreNone", {{"core:num_channels", 0}}, {}, "\"core:num_channels\" is 0"},
        RefusalCase{"ChannelsAreAFraction", {{"core:num_channels", 1.5}}, {}, "\"core:num_channels\" is 1.5"},
        RefusalCase{"OtherSampleFile", {{"core:dataset", "x.bin"}}, {}, "not in the file beside it"},
        RefusalCase{"NoSampleFile", {{"core:metadata_only", true}}, {}, "not in the file beside it"},
        RefusalCase{"BytesBefore", {}, {{"core:header_bytes", 12}}, "holds other bytes as well"},
        RefusalCase{"BytesBehind", {{"core:trailing_bytes", 12}}, {}, "holds other bytes as well"},
        RefusalCase{"TimeIsNone", {}, {{"core:datetime", "yesterday"}}, "\"yesterday\", which is no time"},
        RefusalCase{"TimeHasAnOffset", {}, {{"core:datetime", "2023-11-14T23:13:20.25+01:00"}}, "an offset from UTC instead"},
        RefusalCase{"TimeHasAShortOffset", {}, {{"core:datetime", "2023-11-14T17:13:20-0500"}}, "an offset from UTC instead"},
        RefusalCase{"TimeHasNoZone", {}, {{"core:datetime", "2023-11-14T22:13:20.25"}}, "has no \"Z\" at its end"},
        RefusalCase{"TimeIsNumber", {}, {{"core:datetime", 7}}, "\"core:datetime\" is missing or not a text"},
        RefusalCase{"FrequencyIsText", {}, {{"core:frequency", "FM"}}, "\"core:frequency\""},
        RefusalCase{"FrequencyIsTooHigh", {}, {{"core:frequency", 1e30}}, "\"core:frequency\" is 1e+30"}),
    [](const auto &info) { return std::string(info.param.name); });

TEST_F(Inspection, RefusesFilesThatAreNoRecordings)
{
    const QString path = directory.filePath("notes.txt");
    writeFile(path, "RIFFLE");
    EXPECT_NE(refusalOf(path), "taken");
    writeFile(path, "RIFF" + littleEndian(quint32(4)) + "AVI ");
    EXPECT_NE(refusalOf(path).find("is not WAVE"), std::string::npos);
    writeFile(path, "hello");
    EXPECT_NE(refusalOf(path).find("neither a WAV file nor"), std::string::npos);
    EXPECT_NE(refusalOf(directory.filePath("nothing.wav")).find("No such file"), std::string::npos);
    EXPECT_NE(refusalOf(directory.path()).find("no regular file"), std::string::npos);
    writeFile(directory.filePath("alone.sigmf-meta"), sigmfMeta());
    EXPECT_NE(refusalOf(directory.filePath("alone.sigmf-meta")).find("No such file"), std::string::npos);
    writeFile(directory.filePath("broken.sigmf-meta"), "{\"global\":");
    EXPECT_NE(refusalOf(directory.filePath("broken.sigmf-meta")).find("at byte"), std::string::npos);
}

TEST(SampleFormat, KnowsTheSizeOfASample)
{
    EXPECT_EQ(SampleFormat::ofSigmf("cf64_le")->bytes, 16u);
    EXPECT_EQ(SampleFormat::ofSigmf("ri16_be")->bytes, 2u);
    EXPECT_EQ(SampleFormat::ofSigmf("cu8")->bytes, 2u);
    EXPECT_EQ(SampleFormat::ofSigmf("ri8_le")->bytes, 1u);
    for (const char *datatype : {"", "c", "xi8", "ci8_", "ci8_me", "ci16_le ", "f32_le"})
        EXPECT_FALSE(SampleFormat::ofSigmf(datatype)) << datatype;
}

TEST(SigmfTime, HasMicroseconds)
{
    EXPECT_EQ(fromSigmfTime("1970-01-01T00:00:00Z"), 0u);
    EXPECT_EQ(fromSigmfTime("2023-11-14T22:13:20.123456Z"), 1'700'000'000'123'456u);
    EXPECT_EQ(fromSigmfTime("2023-11-14T22:13:20.1234569Z"), 1'700'000'000'123'456u);
    EXPECT_EQ(toSigmfTime(1'700'000'000'000'007), "2023-11-14T22:13:20.000007Z");
    for (const char *text : {"", "2023-11-14", "2023-11-14T22:13:20", "2023-13-14T22:13:20Z", "1969-12-31T23:59:59Z"})
        EXPECT_FALSE(fromSigmfTime(text)) << text;
}

} // namespace
