#pragma once

#include "valuetreelib/commandframe.h"

#include <QString>
#include <QtEndian>

namespace values
{
template <typename T> struct SetCommandOf;
template <> struct SetCommandOf<int> { static constexpr CommandId id = SetIntCommand; };
template <> struct SetCommandOf<unsigned int> { static constexpr CommandId id = SetUnsignedCommand; };
template <> struct SetCommandOf<qint64> { static constexpr CommandId id = SetInt64Command; };
template <> struct SetCommandOf<double> { static constexpr CommandId id = SetDoubleCommand; };

/// How the content of a value goes into the payload of its command. `read` leaves the content alone and returns false
/// when the bytes are not one; it takes no more than it needs.
template <typename T> struct StreamFormat {
    static constexpr CommandId command = SetCommandOf<T>::id;

    static void append(std::string &out, T content)
    {
        char bytes[sizeof content];
        qToLittleEndian(content, bytes);
        out.append(bytes, sizeof bytes);
    }
    static bool read(ByteCursor &in, T &content)
    {
        const char *const bytes = in.take(sizeof content);
        if (bytes)
            content = qFromLittleEndian<T>(bytes);
        return bytes;
    }
};

template <> struct VALUETREELIB_EXPORT StreamFormat<bool> {
    static constexpr CommandId command = SetBoolCommand;
    static void append(std::string &out, bool content);
    static bool read(ByteCursor &in, bool &content);
};

/// One byte, then to the end of what is left: 0 and Latin-1, or 1 and UTF-16 units; so every text arrives as it was.
template <> struct VALUETREELIB_EXPORT StreamFormat<QString> {
    static constexpr CommandId command = SetTextCommand;
    static void append(std::string &out, const QString &content);
    static bool read(ByteCursor &in, QString &content);
};
} // namespace values
