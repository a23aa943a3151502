#include "coresupport/charstream.h"

namespace
{
constexpr char separator = ';';

using Length = std::uint32_t;

/// Reads a length and takes that many elements; null when they cannot be there, or be held by a Qt container.
const char *takeCounted(Ulma::CharStreamReader &in, std::size_t elementSize, int &count)
{
    Ulma::CharStreamReader ahead = in;
    Length length = 0;
    if (!Ulma::CharStreamForm<Length>::read(ahead, length) || length > Length(std::numeric_limits<int>::max()))
        return nullptr;
    const char *const elements = ahead.take(std::uint64_t(length) * elementSize);
    if (!elements)
        return nullptr;
    in = ahead;
    count = static_cast<int>(length);
    return elements;
}

void writeCounted(std::string &out, const void *elements, std::size_t elementSize, int count)
{
    out.reserve(out.size() + sizeof(Length) + count * elementSize);
    Ulma::CharStreamForm<Length>::write(out, static_cast<Length>(count));
    out.append(static_cast<const char *>(elements), count * elementSize);
}
} // namespace

namespace Ulma
{
void CharStreamForm<QString>::write(std::string &out, const QString &value)
{
    writeCounted(out, value.constData(), sizeof(QChar), value.size());
}

bool CharStreamForm<QString>::read(CharStreamReader &in, QString &value)
{
    int count = 0;
    const char *const units = takeCounted(in, sizeof(QChar), count);
    if (!units)
        return false;
    value = QString(count, Qt::Uninitialized);
    std::memcpy(value.data(), units, count * sizeof(QChar)); // the stream does not align its characters
    return true;
}

void CharStreamForm<QByteArray>::write(std::string &out, const QByteArray &value)
{
    writeCounted(out, value.constData(), 1, value.size());
}

bool CharStreamForm<QByteArray>::read(CharStreamReader &in, QByteArray &value)
{
    int count = 0;
    const char *const bytes = takeCounted(in, 1, count);
    if (!bytes)
        return false;
    value = QByteArray(bytes, count);
    return true;
}

bool EatSemicolon(const char **cursor, const char *end)
{
    return *cursor != end && EatSemicolon(cursor);
}

bool EatSemicolon(const char **cursor)
{
    if (**cursor != separator)
        return false;
    ++*cursor;
    return true;
}
} // namespace Ulma
