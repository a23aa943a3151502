#pragma once

#include <QDataStream>
#include <QString>
#include <QtEndian>

namespace KORVE_XML::engine
{

/// What QDataStream writes as the count of a null text or byte array.
constexpr quint32 nullCount = 0xFFFFFFFF;

/// In which order a stream has the bytes of its integers and of the units of its texts: both in memory, either way.
class ByteOrder
{
public:
    explicit ByteOrder(const QDataStream &stream) : big(stream.byteOrder() == QDataStream::BigEndian) {}

    template <class Integer> Integer load(const char *from) const
    {
        return big ? qFromBigEndian<Integer>(from) : qFromLittleEndian<Integer>(from);
    }
    template <class Integer> void store(char *to, Integer value) const
    {
        if (big)
            qToBigEndian(value, to);
        else
            qToLittleEndian(value, to);
    }
    QString loadText(const char *from, int bytes) const
    {
        QString text(bytes / int(sizeof(QChar)), Qt::Uninitialized);
        if (big)
            qFromBigEndian<quint16>(from, text.size(), text.data());
        else
            qFromLittleEndian<quint16>(from, text.size(), text.data());
        return text;
    }
    void storeText(char *to, const QString &text) const
    {
        if (big)
            qToBigEndian<quint16>(text.utf16(), text.size(), to);
        else
            qToLittleEndian<quint16>(text.utf16(), text.size(), to);
    }

private:
    bool big;
};

} // namespace KORVE_XML::engine
