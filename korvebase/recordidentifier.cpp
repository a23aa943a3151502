#include "korvebase/recordidentifier.h"

#include <QDataStream>

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
    stream >> subSystem >> deviceID >> recordID;
    if (stream.status() != QDataStream::Ok)
        return false;
    value = korve::RecordIdentifier(subSystem, deviceID, recordID);
    return true;
}

} // namespace Ulma
