#include "tests/installation/recorder/recordingfiles.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace
{

QJsonObject merged(QJsonObject object, const QJsonObject &over)
{
    for (auto member = over.begin(); member != over.end(); ++member) {
        if (member.value().isNull())
            object.remove(member.key());
        else
            object[member.key()] = member.value();
    }
    return object;
}

} // namespace

QByteArray chunk(const char *name, const QByteArray &content)
{
    return QByteArray(name) + littleEndian(quint32(content.size())) + content +
           (content.size() % 2 ? QByteArray(1, 0) : QByteArray());
}

QByteArray WavFile::bytes() const
{
    const quint16 frame = frameBytes == 0 ? quint16(channels * bits / 8) : frameBytes;
    const QByteArray format = littleEndian(code) + littleEndian(channels) + littleEndian(sampleRateHz) +
                              littleEndian(quint32(sampleRateHz * frame)) + littleEndian(frame) + littleEndian(bits);
    const QByteArray content = "WAVE" + before + chunk("fmt ", format) + chunk("data", samples);
    return "RIFF" + littleEndian(quint32(content.size())) + content;
}

QByteArray sigmfMeta(const QJsonObject &global, const QJsonObject &capture)
{
    const QJsonObject globalDefault{{"core:datatype", "ci16_le"}, {"core:sample_rate", 20e6}, {"core:version", "1.0.0"},
                                    {"other:antenna", "loop"}};
    const QJsonObject captureDefault{
        {"core:sample_start", 0}, {"core:frequency", 98.5e6}, {"core:datetime", "2023-11-14T22:13:20.25Z"}};
    return QJsonDocument(QJsonObject{{"global", merged(globalDefault, global)},
                                     {"captures", QJsonArray{merged(captureDefault, capture)}},
                                     {"annotations", QJsonArray{QJsonObject{{"core:label", "two signals"}}}}})
        .toJson();
}
