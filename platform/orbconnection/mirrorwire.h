#pragma once

#include "valuetreelib/bytecursor.h"

#include <QString>

#include <optional>
#include <string>
#include <string_view>

/// The byte form of what two mirrors tell each other.
///
///     batch  = version sequence record...     8 and 64 bits
///     record = kind content                   8 bits, and then
///         SnapshotBegin, Applied              count
///         SnapshotEnd                         nothing
///         Path                                path
///         Node, NodeGone, ValueGone           number
///         Value                               number type typename frames
///         Change                              number frames
///         Set                                 number type frames
///
/// Numbers are little-endian; number and type have 32 bits, count 64; typename, path (UTF-8, relative to the mirrored
/// node: "" for itself, else without empty parts) and frames (see valuetreelib/commandframe.h) have their length in 32
/// bits before them. `sequence` counts the batches of one direction from 1; the next batch after some that are missing
/// begins with SnapshotBegin. Kinds 16 to 31 are kept for the parts of keyed maps.
///
/// A number stands for a path, and for the life of the session: it counts the Path records of who writes it. After
/// SnapshotBegin a server counts from 1 again, and names all paths of before in the same order.
///
/// The server says how things are: `Applied` and `SnapshotBegin` how many of the client's records it has applied, then
/// of each path that it names whether there is a node, or a value, with its class and content. `Change` is what of a
/// value has changed. The client says what it wants: `Value` to have one, unless there is one; `Set` to change one of
/// this class; `ValueGone` that it goes, if this client has made it; `NodeGone` to hear of a node again.
namespace mirror
{
constexpr unsigned protocolVersion = 2;

enum class RecordKind : quint8 {
    SnapshotBegin = 1,
    SnapshotEnd,
    Applied,
    Path,
    Node,
    NodeGone,
    Value,
    ValueGone,
    Change,
    Set,
};

constexpr std::size_t batchHeaderBytes = 9;

/// Views into the batch, texts in UTF-8; what a kind does not have is empty.
struct Record {
    RecordKind kind{};
    quint32 number = 0;
    qint32 type = 0;
    quint64 count = 0;
    std::string_view typeName{};
    std::string_view path{};
    std::string_view frames{};
};

/// The bytes of a text for a record, which does not keep them.
inline std::string_view viewOf(const QByteArray &utf8)
{
    return {utf8.constData(), static_cast<std::size_t>(utf8.size())};
}
inline QString textOf(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()));
}

void appendHeader(std::string &out, quint64 sequence);
/// Appends what @p record has of its kind.
void appendRecord(std::string &out, const Record &record);

/// The sequence; nothing, when the bytes are no header of this version.
std::optional<quint64> readHeader(values::ByteCursor &in);
/// Nothing, when the bytes that are left are no whole record of a kind that is known.
std::optional<Record> readRecord(values::ByteCursor &in);
} // namespace mirror
