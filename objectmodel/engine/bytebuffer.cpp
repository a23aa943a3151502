#include "objectmodel/engine/bytebuffer.h"

namespace KORVE_XML::engine {

namespace {

constexpr quint32 nullCount = 0xFFFFFFFF;

/// Writes @p text as UTF-8, at most three bytes a unit; null when it holds surrogates, which are left to Qt.
char *toUtf8(const QString &text, char *to)
{
    for (QChar character : text) {
        const uint unit = character.unicode();
        if (unit < 0x80) {
            *to++ = char(unit);
        } else if (unit < 0x800) {
            *to++ = char(0xC0 | unit >> 6);
            *to++ = char(0x80 | (unit & 0x3F));
        } else if (character.isSurrogate()) {
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

void ByteBuffer::putBytes(std::string_view bytes)
{
    // Streams older than the sixth version know no null byte array.
    if (!bytes.data() && like.version() >= 6)
        return put(nullCount);
    put(quint32(bytes.size()));
    putRaw(bytes.data(), int(bytes.size()));
}

void ByteBuffer::putUtf8(const QString &text)
{
    if (text.isNull())
        return putBytes({});
    const int count = buffer.size();
    grow(4 + 3 * text.size());
    char *const begin = buffer.data() + count + 4;
    const char *const end = toUtf8(text, begin);
    buffer.resize(end ? int(end - buffer.data()) : count);
    if (!end)
        return putBytes(text.toUtf8().toStdString());
    store(buffer.data() + count, quint32(end - begin));
}

void ByteBuffer::putText(const QString &text)
{
    // The first two versions write texts in ways of their own.
    if (like.version() < 3)
        return putStreamed(text);
    if (text.isNull())
        return put(nullCount);
    put(quint32(text.size() * 2));
    char *to = grow(text.size() * 2);
    if (bigEndian)
        qToBigEndian<quint16>(text.utf16(), text.size(), to);
    else
        qToLittleEndian<quint16>(text.utf16(), text.size(), to);
}

int ByteBuffer::openFrame()
{
    put(qint32(0));
    return buffer.size();
}

void ByteBuffer::closeFrame(int frame)
{
    store(buffer.data() + frame - 4, qint32(buffer.size() - frame));
}

} // namespace KORVE_XML::engine
