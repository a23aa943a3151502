#include "valuetreelib/streamformat.h"

#include <cstring>
#include <limits>

namespace values
{
namespace
{
enum TextForm : char { Latin1Form = 0, Utf16Form = 1 };

constexpr std::size_t maxTextBytes = std::numeric_limits<int>::max() / 4; // well below what a QString can hold

bool isLatin1(const QString &text)
{
    // Four characters at a time: most texts are Latin-1 and are looked through whole.
    constexpr quint64 highBytes = 0xFF00FF00FF00FF00;
    const QChar *const characters = text.constData();
    quint64 seen = 0;
    int position = 0;
    for (; position + 4 <= text.size(); position += 4) {
        quint64 four;
        std::memcpy(&four, characters + position, sizeof four);
        seen |= four & highBytes;
    }
    for (; position < text.size(); ++position)
        seen |= characters[position].unicode() & 0xFF00;
    return !seen;
}
} // namespace

void StreamFormat<bool>::append(std::string &out, bool content)
{
    out.push_back(content ? '\1' : '\0');
}

bool StreamFormat<bool>::read(ByteCursor &in, bool &content)
{
    const char *const byte = in.take(1);
    if (!byte || (*byte != 0 && *byte != 1))
        return false;
    content = *byte;
    return true;
}

void StreamFormat<QString>::append(std::string &out, const QString &content)
{
    const std::size_t start = out.size() + 1;
    const auto size = static_cast<std::size_t>(content.size());
    if (isLatin1(content)) {
        out.push_back(Latin1Form);
        out.resize(start + size);
        for (std::size_t i = 0; i < size; ++i)
            out[start + i] = static_cast<char>(content.constData()[i].unicode());
        return;
    }
    out.push_back(Utf16Form);
    out.resize(start + 2 * size);
    qToLittleEndian<quint16>(content.utf16(), content.size(), &out[start]);
}

bool StreamFormat<QString>::read(ByteCursor &in, QString &content)
{
    const char *const form = in.take(1);
    if (!form || in.left() > maxTextBytes)
        return false;
    const auto size = static_cast<int>(in.left());
    if ((*form != Latin1Form && *form != Utf16Form) || (*form == Utf16Form && size % 2))
        return false;
    const char *const bytes = in.take(in.left());
    if (*form == Latin1Form) {
        content = QString::fromLatin1(bytes, size);
        return true;
    }
    content.resize(size / 2);
    qFromLittleEndian<quint16>(bytes, size / 2, content.data());
    return true;
}
} // namespace values
