#pragma once

#include "coresupport/coresupport_export.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

/// The char stream: the transport form of items in the value layer, in the machine's byte order, without padding.
namespace Ulma
{
/// A position in a char stream and what is left behind it.
class CharStreamReader
{
public:
    CharStreamReader(const char *position, std::uint64_t bytesLeft) : position(position), bytesLeft(bytesLeft) {}

    /// Yields the next @p count bytes, or null, and stays where it is, when fewer are left.
    const char *take(std::uint64_t count)
    {
        if (count > bytesLeft)
            return nullptr;
        bytesLeft -= count;
        return std::exchange(position, position + count);
    }
    const char *at() const { return position; }

private:
    const char *position;
    std::uint64_t bytesLeft;
};

/// How a type is written: `write` appends to the stream, `read` is its reverse, or leaves the value alone and returns
/// false. Specialise it for a type of your own, best by the forms below.
template <typename T, typename = void> struct CharStreamForm;

/// Numbers of 4 or 8 bytes: their raw bytes.
template <typename T>
struct CharStreamForm<T, std::enable_if_t<std::is_arithmetic_v<T> && (sizeof(T) == 4 || sizeof(T) == 8)>> {
    static void write(std::string &out, T value)
    {
        char bytes[sizeof value];
        std::memcpy(bytes, &value, sizeof value);
        out.append(bytes, sizeof value);
    }
    static bool read(CharStreamReader &in, T &value)
    {
        const char *const bytes = in.take(sizeof value);
        if (bytes)
            std::memcpy(&value, bytes, sizeof value);
        return bytes;
    }
};

/// Text: its length in characters (32 bits), then its UTF-16 units. A null text is read back as an empty one.
template <> struct CORESUPPORT_EXPORT CharStreamForm<QString> {
    static void write(std::string &out, const QString &value);
    static bool read(CharStreamReader &in, QString &value);
};

/// A char-stream block: its length in bytes (32 bits), then the bytes.
template <> struct CORESUPPORT_EXPORT CharStreamForm<QByteArray> {
    static void write(std::string &out, const QByteArray &value);
    static bool read(CharStreamReader &in, QByteArray &value);
};

template <typename T> std::string toStandardString(const T &value)
{
    std::string out;
    CharStreamForm<T>::write(out, value);
    return out;
}

/// Reads foreign bytes: nothing at or behind @p end is touched. On false, cursor and value are as before.
template <typename T> bool fromCharStream(const char **cursor, const char *end, T &value)
{
    CharStreamReader in(*cursor, static_cast<std::uint64_t>(end - *cursor));
    if (!CharStreamForm<T>::read(in, value))
        return false;
    *cursor = in.at();
    return true;
}

/// As above, without an end: only for bytes that the caller vouches for.
template <typename T> bool fromCharStream(const char **cursor, T &value)
{
    CharStreamReader in(*cursor, std::numeric_limits<std::uint64_t>::max());
    if (!CharStreamForm<T>::read(in, value))
        return false;
    *cursor = in.at();
    return true;
}

/// As above; an unreadable value is `T()`.
template <typename T> T fromCharStream(const char **cursor)
{
    T value{};
    fromCharStream<T>(cursor, value);
    return value;
}

/// Passes one ";". On false there was none, and the cursor is as before.
CORESUPPORT_EXPORT bool EatSemicolon(const char **cursor, const char *end);
/// As above, for bytes that the caller vouches for; a terminating NUL counts as an end.
CORESUPPORT_EXPORT bool EatSemicolon(const char **cursor);
} // namespace Ulma
