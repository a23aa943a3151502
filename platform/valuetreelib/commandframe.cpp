#include "valuetreelib/commandframe.h"

#include <QtEndian>

namespace values
{
namespace
{
constexpr quint8 longLength = 255;
}

std::optional<CommandFrame> nextFrame(ByteCursor &in)
{
    const char *const shortLength = in.take(1);
    if (!shortLength)
        return std::nullopt;
    quint32 length = static_cast<quint8>(*shortLength);
    if (length == longLength) {
        const char *const bytes = in.take(sizeof length);
        if (!bytes)
            return std::nullopt;
        length = qFromLittleEndian<quint32>(bytes);
    }
    const char *const body = length ? in.take(length) : nullptr;
    if (!body)
        return std::nullopt;
    return CommandFrame{static_cast<quint8>(*body), {body + 1, body + length}};
}

void closeFrame(std::string &out, std::size_t start)
{
    const std::size_t length = out.size() - start - 1;
    if (length < longLength) {
        out[start] = static_cast<char>(length);
        return;
    }
    char bytes[sizeof(quint32)];
    qToLittleEndian(static_cast<quint32>(length), bytes);
    out[start] = static_cast<char>(longLength);
    out.insert(start + 1, bytes, sizeof bytes);
}
} // namespace values
