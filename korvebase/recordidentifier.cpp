#include "korvebase/recordidentifier.h"

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

namespace
{

/// Looks at the length before the stream does, which would make room for up to 2 MiB and only then miss the bytes.
bool readText(QDataStream &stream, QString &text)
{
    constexpr quint32 nullText = 0xFFFFFFFF;
    QIODevice &block = *stream.device();
    char head[sizeof nullText];
    if (block.peek(head, sizeof head) != sizeof head)
        return false;
    const auto length = qFromBigEndian<quint32>(head);
    if (length != nullText && length > block.bytesAvailable() - qint64(sizeof head))
        return false;
    stream >> text;
    return stream.status() == QDataStream::Ok;
}

} // namespace

namespace korve
{

QString RecordIdentifier::toString() const
{
    if (!valid())
        return QStringLiteral("[invalid]");
    const QString at = record + u'@';
    return subSystemName.isEmpty() ? at + device : at + subSystemName + u'/' + device;
}

} // namespace korve

namespace Ulma
{

void CharStreamForm<korve::RecordIdentifier>::write(std::string &out, const korve::RecordIdentifier &value)
{
    QByteArray block;
    QDataStream stream(&block, QIODevice::WriteOnly);
    stream << value.subSystem() << value.deviceID() << value.recordID();
    CharStreamForm<QByteArray>::write(out, block);
}

bool CharStreamForm<korve::RecordIdentifier>::read(CharStreamReader &in, korve::RecordIdentifier &value)
{
    QByteArray block;
    if (!CharStreamForm<QByteArray>::read(in, block))
        return false;
    QDataStream stream(block);
    QString subSystem;
    QString deviceID;
    QString recordID;
    if (!readText(stream, subSystem) || !readText(stream, deviceID) || !readText(stream, recordID))
        return false;
    value = korve::RecordIdentifier(subSystem, deviceID, recordID);
    return true;
}

} // namespace Ulma
