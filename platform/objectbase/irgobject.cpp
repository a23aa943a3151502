#include "objectbase/irgobject.h"

#include "objectbase/exceptions.h"
#include "objectbase/logger.h"

#include <QDataStream>
#include <QDateTime>
#include <QFile>
#include <QSaveFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <cmath>
#include <limits>

namespace REPORTGENERATOR
{

namespace
{

/// Puts the stream into the fixed form of whole-document bytes, and back when done.
class DocumentForm
{
public:
    explicit DocumentForm(QDataStream &stream) : stream(stream), version(stream.version()), order(stream.byteOrder())
    {
        stream.setVersion(QDataStream::Qt_5_12);
        stream.setByteOrder(QDataStream::BigEndian);
    }
    ~DocumentForm()
    {
        stream.setVersion(version);
        stream.setByteOrder(order);
    }
    DocumentForm(const DocumentForm &) = delete;
    DocumentForm &operator=(const DocumentForm &) = delete;

private:
    QDataStream &stream;
    int version;
    QDataStream::ByteOrder order;
};

/// Opens a file that is not open for the life of this; one that is open stays so.
class OpenFile
{
public:
    explicit OpenFile(QFile *file) : file(file), opened(file && !file->isOpen() && file->open(QIODevice::ReadOnly)) {}
    ~OpenFile()
    {
        if (opened)
            file->close();
    }
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;

    bool isReadable() const { return file && file->isReadable(); }

private:
    QFile *file;
    bool opened;
};

} // namespace

void IRGObject::Check() const
{
    Check(false);
}

bool IRGObject::IsValid(float value) const
{
    return !std::isnan(value);
}

bool IRGObject::IsValid(bool) const
{
    return true;
}

bool IRGObject::IsValid(unsigned value) const
{
    return value != std::numeric_limits<unsigned>::max();
}

bool IRGObject::IsValid(qint64 value) const
{
    return value != std::numeric_limits<qint64>::min();
}

bool IRGObject::IsValid(const QDateTime &value) const
{
    return value.isValid();
}

bool IRGObject::IsValid(const QString &value) const
{
    return !value.isNull();
}

bool IRGObject::IsValid(double value) const
{
    return !std::isnan(value);
}

bool IRGObject::IsValid(int value) const
{
    return value != std::numeric_limits<int>::min();
}

void IRGObject::SetInvalid(float &value) const
{
    value = std::numeric_limits<float>::quiet_NaN();
}

void IRGObject::SetInvalid(unsigned &value) const
{
    value = std::numeric_limits<unsigned>::max();
}

void IRGObject::SetInvalid(qint64 &value) const
{
    value = std::numeric_limits<qint64>::min();
}

void IRGObject::SetInvalid(QString &value) const
{
    value = QString();
}

void IRGObject::SetInvalid(double &value) const
{
    value = std::numeric_limits<double>::quiet_NaN();
}

void IRGObject::SetInvalid(int &value) const
{
    value = std::numeric_limits<int>::min();
}

bool IRGObject::SetXmlString(const QString &text, bool resetFirst)
{
    QXmlStreamReader reader(text);
    return ReadDocument(reader, resetFirst);
}

bool IRGObject::ReadDocument(QXmlStreamReader &reader, bool resetFirst)
{
    if (!reader.readNextStartElement() || reader.name() != GetObjectName())
        return false;
    if (resetFirst)
        Reset();
    ProcessXml(reader);
    // What follows the object decides whether the document was well-formed as a whole.
    while (!reader.atEnd())
        reader.readNext();
    return !reader.hasError();
}

bool IRGObject::SetBinaryRepresentation(QDataStream &in)
{
    const DocumentForm form(in);
    qint32 tag = 0;
    qint32 length = 0;
    in >> tag >> length;
    if (in.status() != QDataStream::Ok)
        return false;
    if (tag != qint32(objectId))
        throw BinaryParsingException(QStringLiteral("The bytes are not those of a '%1'.").arg(GetObjectName()));
    SetBinary(in, length);
    return in.status() == QDataStream::Ok;
}

bool IRGObject::MergeRGObject(const IRGObject &other)
{
    const QString text = other.GetXmlString();
    return !text.isEmpty() && SetXmlString(text, false);
}

void IRGObject::ProcessXml(QXmlStreamReader &reader)
{
    // The next token is read before the end is looked for: a child may have the object's own name, and its reader
    // stops on that child's end element.
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement())
            ProcessXmlStartElement(reader);
        else if (reader.isEndElement() && reader.name() == objectName)
            return;
    }
}

QString IRGObject::GetXmlString() const
{
    QString text;
    QXmlStreamWriter writer(&text);
    GetXml(writer);
    return text;
}

bool IRGObject::GetBinaryRepresentation(QDataStream &out) const
{
    const DocumentForm form(out);
    return GetBinary(out, int(objectId), true);
}

QByteArray IRGObject::GetBinaryRepresentationAsQByteArray() const
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    GetBinaryRepresentation(out);
    return bytes;
}

bool IRGObject::GetCompressedBinaryRepresentation(QDataStream &out, int level) const
{
    const DocumentForm form(out);
    const QByteArray bytes = GetCompressedBinaryRepresentationAsQByteArray(level);
    out << bytes;
    return !bytes.isEmpty();
}

QByteArray IRGObject::GetCompressedBinaryRepresentationAsQByteArray(int level) const
{
    const QByteArray bytes = GetBinaryRepresentationAsQByteArray();
    return bytes.isEmpty() ? bytes : qCompress(bytes, level);
}

bool IRGObject::LoadXml(const QString &fileName)
{
    QFile file(fileName);
    return LoadXml(&file);
}

bool IRGObject::LoadXml(QFile *file)
{
    const OpenFile open(file);
    if (!open.isReadable())
        return false;
    QXmlStreamReader reader(file);
    return ReadDocument(reader, false);
}

bool IRGObject::LoadBinary(QFile *file)
{
    const OpenFile open(file);
    if (!open.isReadable())
        return false;
    QDataStream in(file);
    return SetBinaryRepresentation(in);
}

bool IRGObject::SaveXml(const QString &fileName) const
{
    const QByteArray text = GetXmlString().toUtf8();
    QSaveFile file(fileName);
    return !text.isEmpty() && file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
}

void IRGObject::SetLogger(std::shared_ptr<Logger> newLogger) const
{
    logger = std::move(newLogger);
}

void IRGObject::ResetLogger() const
{
    logger.reset();
}

const QString &IRGObject::GetVersion() const
{
    static const QString version = QStringLiteral("1.0");
    return version;
}

void IRGObject::SetObjectType(ObjectTypes type)
{
    objectType = type;
}

QString IRGObject::GetTextValue(QXmlStreamReader &reader) const
{
    return reader.readElementText(QXmlStreamReader::SkipChildElements);
}

int IRGObject::skipCurrentElement(QDataStream &in, int length, int) const
{
    QIODevice *device = in.device();
    if (!device || length <= 0)
        return 0;
    // The device is asked directly: a skip beyond the end would spoil the stream's status for what follows.
    return int(device->skip(length));
}

} // namespace REPORTGENERATOR
