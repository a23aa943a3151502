#include "objectmodel/engine/bytecursor.h"

namespace KORVE_XML::engine
{

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
    return bytes.size() % 2 ? QString() : order.loadText(bytes.data(), int(bytes.size()));
}

} // namespace KORVE_XML::engine
