#include "installation/recorder/recorddocument.h"
#include "tests/installation/recorder/recordingfiles.h"
#include "tests/installation/recorder/storedrecords.h"

#include <QDir>
#include <QJsonDocument>

#include <cstdio>

namespace
{
/// A WAV file whose format is the long one, with an odd chunk before it.
QByteArray extensibleWav()
{
    WavFile file;
    file.code = 0xFFFE;
    file.before = chunk("LIST", "odd");
    QByteArray bytes = file.bytes();
    const int format = bytes.indexOf("fmt ");
    bytes.replace(format + 4, 4, littleEndian(quint32(40)));
    const QByteArray extension = littleEndian(quint16(22)) + littleEndian(quint16(16)) + littleEndian(quint32(4)) +
                                 QByteArray::fromHex("0100000000001000800000aa00389b71"); // what PCM is called there
    return bytes.insert(format + 24, extension);
}

/// A WAV file whose sizes have 64 bits.
QByteArray longWav()
{
    WavFile file;
    file.before = chunk("ds64", QByteArray(8, '\0') + littleEndian(quint64(8)) + QByteArray(12, '\0'));
    QByteArray bytes = file.bytes().replace(0, 4, "RF64");
    return bytes.replace(bytes.indexOf("data") + 4, 4, QByteArray(4, '\xff'));
}

/// The document of a SigMF recording that is a record of ours.
QByteArray ourDocument()
{
    installation::recorder::Record record = fullRecord(QStringLiteral("ours"));
    record.id = QStringLiteral("R1");
    record.sigmf = QJsonDocument::fromJson(sigmfMeta()).object();
    return toDocument(record);
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
    QDir(folder).mkpath(QStringLiteral("fuzz_wav"));
    QDir(folder).mkpath(QStringLiteral("fuzz_sigmf"));
    writeFile(folder + QStringLiteral("/fuzz_wav/plain"), WavFile{}.bytes());
    writeFile(folder + QStringLiteral("/fuzz_wav/extensible"), extensibleWav());
    writeFile(folder + QStringLiteral("/fuzz_wav/long"), longWav());
    writeFile(folder + QStringLiteral("/fuzz_sigmf/foreign"), sigmfMeta());
    writeFile(folder + QStringLiteral("/fuzz_sigmf/real"),
              sigmfMeta({{"core:datatype", "rf32_be"}, {"core:num_channels", 2}, {"core:sample_rate", 48e3}}));
    writeFile(folder + QStringLiteral("/fuzz_sigmf/ours"), ourDocument());
    return 0;
}
