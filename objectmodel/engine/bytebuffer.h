#pragma once

#include "objectmodel/engine/byteorder.h"

#include <QByteArray>

#include <array>
#include <memory>
#include <string_view>

namespace KORVE_XML::engine
{

/// Gathers what a form writes, in the byte order of the stream that takes it in one piece at the end.
class ByteBuffer
{
public:
    /// @p like gives the form; it must outlive the buffer.
    explicit ByteBuffer(const QDataStream &like) : like(like), order(like) {}
    ByteBuffer(const ByteBuffer &) = delete;
    ByteBuffer &operator=(const ByteBuffer &) = delete;

    template <class Integer> void put(Integer value)
    {
        makeRoom(sizeof value);
        order.store(end, value);
        end += sizeof value;
    }
    /// The first @p count bytes of @p word, the least significant first, whatever the stream's order.
    void putBits(quint64 word, int count)
    {
        makeRoom(sizeof word);
        qToLittleEndian(word, end);
        end += count;
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
    void closeFrame(int frame) { order.store(begin + frame - 4, qint32(size() - frame)); }

    void writeTo(QDataStream &out) const { out.writeRawData(begin, size()); }

private:
    int size() const { return int(end - begin); }
    void makeRoom(std::size_t count)
    {
        if (std::size_t(limit - end) < count)
            enlarge(count);
    }
    void enlarge(std::size_t count);

    const QDataStream &like;
    const ByteOrder order;
    std::array<char, 4096> small;
    std::unique_ptr<char[]> large;
    char *begin = small.data();
    char *end = begin;
    char *limit = begin + small.size();
};

} // namespace KORVE_XML::engine
