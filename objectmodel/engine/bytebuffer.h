#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QtEndian>

#include <array>
#include <memory>
#include <string_view>

class QString;

namespace KORVE_XML::engine {

/// Gathers what a form writes, in the byte order of the stream that takes it in one piece at the end.
class ByteBuffer
{
public:
    /// @p like gives the form; it must outlive the buffer.
    explicit ByteBuffer(const QDataStream &like) : like(like), bigEndian(like.byteOrder() == QDataStream::BigEndian) {}
    ByteBuffer(const ByteBuffer &) = delete;
    ByteBuffer &operator=(const ByteBuffer &) = delete;

    template <class Integer> void put(Integer value)
    {
        makeRoom(sizeof value);
        store(end, value);
        end += sizeof value;
    }
    void putRaw(const void *bytes, int size);
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
    int openFrame()
    {
        put(qint32(0));
        return size();
    }
    void closeFrame(int frame) { store(begin + frame - 4, qint32(size() - frame)); }

    void writeTo(QDataStream &out) const { out.writeRawData(begin, size()); }

private:
    int size() const { return int(end - begin); }
    void makeRoom(std::size_t count)
    {
        if (std::size_t(limit - end) < count)
            enlarge(count);
    }
    void enlarge(std::size_t count);
    template <class Integer> void store(char *to, Integer value) const
    {
        if (bigEndian)
            qToBigEndian(value, to);
        else
            qToLittleEndian(value, to);
    }

    const QDataStream &like;
    const bool bigEndian;
    std::array<char, 4096> small;
    std::unique_ptr<char[]> large;
    char *begin = small.data();
    char *end = begin;
    char *limit = begin + small.size();
};

} // namespace KORVE_XML::engine
