#include "objectmodel/engine/bytebuffer.h"

namespace KORVE_XML::engine
{

namespace
{

/// Writes the leading ASCII units of a text, four at a time, and returns how many there were.
int writeAscii(const ushort *units, int count, char *to)
{
    int done = 0;
    for (; done + 4 <= count; done += 4) {
        const auto four = qFromUnaligned<quint64>(units + done);
        if (four & 0xFF80FF80FF80FF80)
            break;
        for (int n = 0; n < 4; ++n)
            to[done + n] = char(units[done + n]);
    }
    return done;
}

/// Writes @p text as UTF-8, at most three bytes a unit; null when it holds surrogates, which are left to Qt.
char *writeUtf8(const QString &text, char *to)
{
    const ushort *units = text.utf16();
    for (int n = 0; n < text.size(); ++n) {
        const int ascii = writeAscii(units + n, text.size() - n, to);
        to += ascii;
        n += ascii;
        if (n == text.size())
            break;
        const uint unit = units[n];
        if (unit < 0x80) {
            *to++ = char(unit);
        } else if (unit < 0x800) {
            *to++ = char(0xC0 | unit >> 6);
            *to++ = char(0x80 | (unit & 0x3F));
        } else if (QChar::isSurrogate(unit)) {
            return nullptr;
        } else {
            *to++ = char(0xE0 | unit >> 12);
            *to++ = char(0x80 | (unit >> 6 & 0x3F));
            *to++ = char(0x80 | (unit & 0x3F));
        }
    }
    return to;
}

} // namespace

void ByteBuffer::enlarge(std::size_t count)
{
    const std::size_t used = std::size_t(size());
    const std::size_t capacity = 2 * (used + count);
    std::unique_ptr<char[]> larger(new char[capacity]);
    memcpy(larger.get(), begin, used);
    large = std::move(larger);
    begin = large.get();
    end = begin + used;
    limit = begin + capacity;
}

void ByteBuffer::putRaw(const void *bytes, int count)
{
    makeRoom(std::size_t(count));
    memcpy(end, bytes, std::size_t(count));
    end += count;
}

void ByteBuffer::putBytes(std::string_view bytes)
{
    // Streams older than the sixth version know no null byte array.
    if (!bytes.data() && like.version() >= 6)
        return put(nullCount);
    put(quint32(bytes.size()));
    if (!bytes.empty())
        putRaw(bytes.data(), int(bytes.size()));
}

void ByteBuffer::putUtf8(const QString &text)
{
    if (text.isNull())
        return putBytes({});
    makeRoom(4 + 3 * std::size_t(text.size()));
    char *const first = end + 4;
    char *const last = writeUtf8(text, first);
    if (!last)
        return putBytes(text.toUtf8().toStdString());
    order.store(end, quint32(last - first));
    end = last;
}

void ByteBuffer::putText(const QString &text)
{
    // The first two versions write texts in ways of their own.
    if (like.version() < 3)
        return putStreamed(text);
    if (text.isNull())
        return put(nullCount);
    const int bytes = text.size() * int(sizeof(QChar));
    makeRoom(4 + std::size_t(bytes));
    order.store(end, quint32(bytes));
    order.storeText(end + 4, text);
    end += 4 + bytes;
}

} // namespace KORVE_XML::engine
