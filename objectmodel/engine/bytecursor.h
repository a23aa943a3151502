#pragma once

#include "objectmodel/engine/byteorder.h"

#include <string_view>

namespace KORVE_XML::engine
{

/// Reads values from memory as QDataStream reads them from a device: what is not there reads as zero or null. The
/// cursor then stands at the end and has overrun.
class ByteCursor
{
public:
    ByteCursor(std::string_view bytes, ByteOrder order) : rest(bytes), order(order) {}

    bool atEnd() const { return rest.empty(); }
    bool hasOverrun() const { return overrun; }
    qint64 left() const { return qint64(rest.size()); }

    template <class Integer> Integer take()
    {
        const std::string_view bytes = takeRaw(sizeof(Integer));
        return bytes.size() < sizeof(Integer) ? 0 : order.load<Integer>(bytes.data());
    }
    /// A byte array; null data for a null one or one that is cut short.
    std::string_view takeBytes();
    /// A text as the stream has it, not as UTF-8.
    QString takeText();
    void skip(qint64 count) { takeRaw(std::size_t(qBound(qint64(0), count, left()))); }

private:
    /// The next @p count bytes; nothing, with the cursor at the end, if there are fewer.
    std::string_view takeRaw(std::size_t count)
    {
        const bool isThere = count <= rest.size();
        const std::string_view bytes = isThere ? rest.substr(0, count) : std::string_view();
        rest.remove_prefix(isThere ? count : rest.size());
        overrun |= !isThere;
        return bytes;
    }

    std::string_view rest;
    const ByteOrder order;
    bool overrun = false;
};

} // namespace KORVE_XML::engine
