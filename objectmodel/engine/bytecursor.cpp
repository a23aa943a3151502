#include "objectmodel/engine/bytecursor.h"

namespace KORVE_XML::engine {

namespace {

constexpr quint32 nullCount = 0xFFFFFFFF;

} // namespace

std::string_view ByteCursor::takeBytes()
{
    const auto count = take<quint32>();
    return count == nullCount ? std::string_view() : takeRaw(count);
}

QString ByteCursor::takeText()
{
    const auto count = take<quint32>();
    if (count == nullCount)
        return {};
    const std::string_view bytes = takeRaw(count);
    if (bytes.size() % 2)
        return {};
    QString text(int(bytes.size() / 2), Qt::Uninitialized);
    if (bigEndian)
        qFromBigEndian<quint16>(bytes.data(), text.size(), text.data());
    else
        qFromLittleEndian<quint16>(bytes.data(), text.size(), text.data());
    return text;
}

std::string_view ByteCursor::takeRaw(std::size_t count)
{
    const bool isThere = count <= rest.size();
    const std::string_view bytes = isThere ? rest.substr(0, count) : std::string_view();
    rest.remove_prefix(isThere ? count : rest.size());
    overrun |= !isThere;
    return bytes;
}

} // namespace KORVE_XML::engine
