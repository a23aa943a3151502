#include "tests/support/objectmodel/forms.h"

#include "objectbase/irgobject.h"

#include <QBuffer>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace modeltest
{

using REPORTGENERATOR::IRGObject;

QByteArray taggedForm(const IRGObject &object, quint32 tag, bool withTag)
{
    QBuffer device;
    device.open(QIODevice::ReadWrite);
    QDataStream out(&device);
    out.setVersion(QDataStream::Qt_5_12);
    object.GetBinary(out, static_cast<int>(tag), withTag);
    return device.data();
}

QByteArray taggedPayload(const IRGObject &object)
{
    return taggedForm(object, 0, false).mid(4);
}

void readTagged(IRGObject &object, const QByteArray &payload)
{
    readTagged(object, payload, payload.size());
}

void readTagged(IRGObject &object, const QByteArray &payload, int length)
{
    QBuffer device;
    device.setData(payload);
    device.open(QIODevice::ReadOnly);
    QDataStream in(&device);
    in.setVersion(QDataStream::Qt_5_12);
    object.SetBinary(in, length);
}

std::string xmlOf(const IRGObject &object)
{
    QString written;
    QXmlStreamWriter objectWriter(&written);
    object.GetXml(objectWriter);

    QString canonical;
    QXmlStreamWriter writer(&canonical);
    QXmlStreamReader reader(written);
    while (!reader.atEnd() && !written.isEmpty()) {
        reader.readNext();
        if (reader.isStartElement() || reader.isEndElement() || reader.isCharacters())
            writer.writeCurrentToken(reader);
    }
    return written.isEmpty() || !reader.hasError() ? canonical.toStdString() : "malformed: " + written.toStdString();
}

std::string hex(const QByteArray &bytes)
{
    return bytes.toHex().toStdString();
}

QByteArray bytes(const char *digits)
{
    return QByteArray::fromHex(digits);
}

QByteArray utf8(const char *text)
{
    return QByteArray(text);
}

QByteArray utf16(const QString &text)
{
    QByteArray units;
    for (const QChar unit : text) {
        units.append(static_cast<char>(unit.row()));
        units.append(static_cast<char>(unit.cell()));
    }
    return units;
}

} // namespace modeltest
