#include "installation/recorder/recorddocument.h"
#include "tests/installation/recorder/recordingfiles.h"
#include "tests/installation/recorder/storedrecords.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>

namespace
{

using Inputs = QMap<QString, QByteArray>; ///< by their names

/// A WAV file whose format is the long one, which extends the code @p extended, with an odd chunk before it.
QByteArray extensibleWav(char extended)
{
    WavFile file;
    file.code = 0xFFFE;
    file.before = chunk("LIST", "odd");
    QByteArray bytes = file.bytes();
    const int format = bytes.indexOf("fmt ");
    bytes.replace(format + 4, 4, littleEndian(quint32(40)));
    const QByteArray extension = littleEndian(quint16(22)) + littleEndian(quint16(16)) + littleEndian(quint32(4)) +
                                 extended + QByteArray::fromHex("00000000001000800000aa00389b71"); // as all codes have it
    return bytes.insert(format + 24, extension);
}

/// A WAV file whose sizes have 64 bits.
QByteArray longWav(quint64 sizeBytes)
{
    WavFile file;
    file.before = chunk("ds64", QByteArray(8, '\0') + littleEndian(sizeBytes) + QByteArray(12, '\0'));
    QByteArray bytes = file.bytes().replace(0, 4, "RF64");
    return bytes.replace(bytes.indexOf("data") + 4, 4, QByteArray(4, '\xff'));
}

/// What a recorder takes in.
Inputs goodWavs()
{
    const QByteArray samples(96, '\x21');
    return {{"plain", WavFile{}.bytes()},
            {"bytes", WavFile{.bits = 8, .samples = samples}.bytes()},
            {"longs", WavFile{.bits = 32, .samples = samples}.bytes()},
            {"floats", WavFile{.code = 3, .bits = 32, .samples = samples}.bytes()},
            {"doubles", WavFile{.code = 3, .bits = 64, .samples = samples}.bytes()},
            {"stereo", WavFile{.channels = 2, .samples = samples}.bytes()},
            {"twelvechannels", WavFile{.channels = 12, .bits = 32, .samples = samples}.bytes()},
            {"slow", WavFile{.sampleRateHz = 1}.bytes()},
            {"fast", WavFile{.sampleRateHz = 1'000'000'000}.bytes()},
            {"manychunks", WavFile{.before = chunk("JUNK", QByteArray(28, '\0')) + chunk("bext", QByteArray(602, 'b'))}.bytes()},
            {"textbehind", WavFile{}.bytes() + chunk("LIST", "INFOINAM" + littleEndian(quint32(4)) + "tone")},
            {"extensible", extensibleWav(1)},
            {"extensiblefloat", extensibleWav(3)},
            {"long", longWav(8)},
            {"longhalf", longWav(4)}};
}

/// What a recorder refuses because of its format.
Inputs strangeWavs()
{
    const QByteArray samples(96, '\x21');
    return {{"twelvebits", WavFile{.bits = 12}.bytes()},
            {"twentyfourbits", WavFile{.bits = 24, .samples = samples}.bytes()},
            {"bytesbetween", WavFile{.samples = samples, .frameBytes = 3}.bytes()},
            {"fewbytes", WavFile{.channels = 2, .samples = samples, .frameBytes = 3}.bytes()},
            {"alaw", WavFile{.code = 6, .bits = 8, .samples = samples}.bytes()},
            {"mulaw", WavFile{.code = 7, .bits = 8, .samples = samples}.bytes()},
            {"adpcm", WavFile{.code = 0x11, .bits = 4, .samples = samples, .frameBytes = 32}.bytes()},
            {"unknowncode", WavFile{.code = 0x4711}.bytes()},
            {"norate", WavFile{.sampleRateHz = 0}.bytes()},
            {"nochannels", WavFile{.channels = 0}.bytes()},
            {"allchannels", WavFile{.channels = 65535}.bytes()},
            {"nosamples", WavFile{.samples = {}}.bytes()},
            {"halfasample", WavFile{.samples = QByteArray(7, 's')}.bytes()}};
}

/// What a recorder refuses because of its chunks.
Inputs brokenWavs()
{
    const QByteArray whole = WavFile{}.bytes();
    QByteArray unknownSize = whole;
    QByteArray hugeChunk = WavFile{.before = chunk("LIST", "odd")}.bytes();
    return {{"cutinhead", whole.left(10)},
            {"cutinformat", whole.left(30)},
            {"cutinsamples", whole.chopped(2)},
            {"noformat", "RIFF" + littleEndian(quint32(20)) + "WAVE" + chunk("data", "abcdefgh")},
            {"formatbehind", whole.left(12) + whole.mid(36) + whole.mid(12, 24)},
            {"twoformats", whole.left(36) + whole.mid(12)},
            {"twosamples", whole + whole.mid(36)},
            {"unknownsize", unknownSize.replace(40, 4, "\xff\xff\xff\xff")},
            {"hugechunk", hugeChunk.replace(16, 4, "\xf0\xff\xff\xff")},
            {"longwithoutsize", QByteArray(whole).replace(0, 4, "RF64")},
            {"longmissing", longWav(quint64(-2))},
            {"othercontent", QByteArray(whole).replace(8, 4, "AVI ")}};
}

QJsonObject capture(const QJsonValue &start, const QJsonValue &frequency, const char *time = nullptr)
{
    QJsonObject object{{"core:sample_start", start}, {"core:frequency", frequency}};
    if (time)
        object["core:datetime"] = time;
    return object;
}

QByteArray withMember(const char *name, const QJsonValue &value, const QJsonObject &global = {})
{
    QJsonObject document = QJsonDocument::fromJson(sigmfMeta(global)).object();
    document[QLatin1String(name)] = value;
    return QJsonDocument(document).toJson();
}

/// The document of a SigMF recording that is a record of ours.
QByteArray ourDocument()
{
    installation::recorder::Record record = fullRecord(QStringLiteral("ours"));
    record.id = QStringLiteral("R1");
    record.sigmf = QJsonDocument::fromJson(sigmfMeta()).object();
    return toDocument(record);
}

/// What a recorder takes in.
Inputs goodDocuments()
{
    const QJsonArray tuned{capture(0, 98.5e6, "2023-11-14T22:13:20.25Z"), capture(400, 100e6),
                           capture(600, 101e6, "2023-11-14T22:13:21Z")};
    const QJsonArray marked{QJsonObject{{"core:sample_start", 9}, {"core:sample_count", 80}, {"core:comment", "noise"}}};
    return {{"foreign", sigmfMeta()},
            {"real", sigmfMeta({{"core:datatype", "rf32_be"}, {"core:num_channels", 2}, {"core:sample_rate", 48e3}})},
            {"bytesamples", sigmfMeta({{"core:datatype", "cu8"}})},
            {"wide", sigmfMeta({{"core:datatype", "cf64_le"}, {"core:sample_rate", 499.5e6}})},
            {"fractionalrate", sigmfMeta({{"core:sample_rate", 1234.5678}})},
            {"checksum", sigmfMeta({{"core:sha512", "00ff"}})},
            {"tuned", withMember("captures", tuned)},
            {"later", withMember("captures", QJsonArray{capture(500, -1e6)}, {{"core:offset", 300}})},
            {"nocaptures", withMember("captures", QJsonArray())},
            {"notime", sigmfMeta({}, {{"core:datetime", QJsonValue::Null}})},
            {"longfraction", sigmfMeta({}, {{"core:datetime", "9999-12-31T23:59:59.999999999999Z"}})},
            {"annotated", withMember("annotations", marked)},
            {"greatnumbers", sigmfMeta({{"other:count", 9007199254740992.0}, {"other:more", 1e300}})},
            {"otherletters", sigmfMeta({{"core:description", QString::fromUtf8("f\xC3\xBCr \xF0\x9F\x93\xBB \n")}})},
            {"ours", ourDocument()}};
}

/// What a recorder refuses because of its captures.
Inputs misplacedDocuments()
{
    return {{"negative", withMember("captures", QJsonArray{capture(-1, 0)})},
            {"fraction", withMember("captures", QJsonArray{capture(0.5, 0)})},
            {"countless", withMember("captures", QJsonArray{capture(1e300, 0)})},
            {"descending", withMember("captures", QJsonArray{capture(9, 0), capture(8, 0)})},
            {"behindall", withMember("captures", QJsonArray{capture(0, 0), capture(1000, 0)})},
            {"beforeoffset", withMember("captures", QJsonArray{capture(7, 0)}, {{"core:offset", 8}})},
            {"placeisatext", withMember("captures", QJsonArray{capture("0", 0)})},
            {"backintime", withMember("captures", QJsonArray{capture(0, 0, "2023-11-14T22:13:20Z"),
                                                             capture(1, 0, "2022-11-14T22:13:20Z")})},
            {"withoutzone", sigmfMeta({}, {{"core:datetime", "2023-11-14T22:13:20"}})},
            {"withoffset", sigmfMeta({}, {{"core:datetime", "2023-11-14T22:13:20+01:00"}})},
            {"nosuchday", sigmfMeta({}, {{"core:datetime", "2023-02-30T22:13:20Z"}})},
            {"headerbytes", sigmfMeta({}, {{"core:header_bytes", 4}})},
            {"highfrequency", sigmfMeta({}, {{"core:frequency", 1e30}})}};
}

/// What a recorder refuses because of the rest.
Inputs strangeDocuments()
{
    const QByteArray whole = sigmfMeta();
    return {{"norate", sigmfMeta({{"core:sample_rate", 0}})},
            {"nodatatype", sigmfMeta({{"core:datatype", QJsonValue::Null}})},
            {"twelvebits", sigmfMeta({{"core:datatype", "ci12_le"}})},
            {"threechannels", sigmfMeta({{"core:num_channels", 3}})},
            {"toowide", sigmfMeta({{"core:sample_rate", 1e12}})},
            {"forages", sigmfMeta({{"core:sample_rate", 1e-300}})},
            {"elsewhere", sigmfMeta({{"core:dataset", "other.bin"}})},
            {"metaonly", sigmfMeta({{"core:metadata_only", true}})},
            {"listforglobal", withMember("global", QJsonArray())},
            {"numberforcaptures", withMember("captures", 7)},
            {"numbersforcaptures", withMember("captures", QJsonArray{1, 2})},
            {"oursbroken", ourDocument().replace("VUHF_20M", "VUHF_21M")},
            {"halfours", sigmfMeta({{"korve:record_id", "R1"}})},
            {"cut", whole.left(whole.size() / 2)},
            {"list", "[" + whole + "]"},
            {"deep", QByteArray(2000, '[')}};
}

void write(const QString &folder, const QVector<Inputs> &all)
{
    QDir().mkpath(folder);
    for (const Inputs &inputs : all)
        for (auto input = inputs.cbegin(); input != inputs.cend(); ++input)
            writeFile(folder + QLatin1Char('/') + input.key(), input.value());
}

} // namespace

/// Writes whole files as first inputs: makerecordingcorpus FOLDER
int main(int argc, char **argv)
{
    if (argc != 2) {
        fprintf(stderr, "usage: makerecordingcorpus FOLDER\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    write(folder + QStringLiteral("/fuzz_wav"), {goodWavs(), strangeWavs(), brokenWavs()});
    write(folder + QStringLiteral("/fuzz_sigmf"), {goodDocuments(), misplacedDocuments(), strangeDocuments()});
    return 0;
}
