#pragma once

#include <QDataStream>
#include <QString>
#include <QVarLengthArray>
#include <QtEndian>

#include <string_view>

namespace KORVE_XML::engine {

/// Gathers what a form writes, in the byte order of the stream that takes it in one piece at the end.
class ByteBuffer
{
public:
    /// @p like gives the form; it must outlive the buffer.
    explicit ByteBuffer(const QDataStream &like) : like(like), bigEndian(like.byteOrder() == QDataStream::BigEndian) {}

    template <class Integer> void put(Integer value)
    {
        store(grow(sizeof value), value);
    }
    void putRaw(const void *bytes, int size) { memcpy(grow(size), bytes, std::size_t(size)); }
    /// A byte array as QDataStream writes it.
    void putBytes(std::string_view bytes);
    /// A text as the byte array of its UTF-8 form.
    void putUtf8(const QString &text);
    /// A text as QDataStream writes it.
    void putText(const QString &text);
    /// A value of a type that is rare enough to go through a stream of its own.
    template <class T> void putStreamed(const T &value)
    {
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setVersion(like.version());
        out.setByteOrder(like.byteOrder());
        out.setFloatingPointPrecision(like.floatingPointPrecision());
        out << value;
        putRaw(bytes.constData(), bytes.size());
    }

    /// Opens a frame behind its tag: leaves room for the length. To be closed with what it returned.
    int openFrame();
    void closeFrame(int frame);

    void writeTo(QDataStream &out) const { out.writeRawData(buffer.constData(), buffer.size()); }

private:
    char *grow(int size)
    {
        const int old = buffer.size();
        buffer.resize(old + size);
        return buffer.data() + old;
    }
    template <class Integer> void store(char *to, Integer value) const
    {
        if (bigEndian)
            qToBigEndian(value, to);
        else
            qToLittleEndian(value, to);
    }

    QVarLengthArray<char, 4096> buffer;
    const QDataStream &like;
    const bool bigEndian;
};

} // namespace KORVE_XML::engine
