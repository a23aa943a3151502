#pragma once

#include "valuetreelib/bytecursor.h"

#include <QString>

#include <optional>
#include <string>
#include <string_view>

/// The byte form of what two mirrors tell each other.
///
///     batch  = version sequence applied record...   8, 64 and 64 bits
///     record = kind content                         8 bits, and then
///         SnapshotBegin, SnapshotEnd                nothing
///         Node, NodeGone                            path
///         Value                                     id type typename path frames
///         ValueGone                                 id
///         Change                                    id frames
///
/// Numbers are little-endian; id and type have 32 bits; typename, path (UTF-8, relative to the mirrored node: "" for
/// itself, else without empty parts) and frames (see valuetreelib/commandframe.h) have their length in 32 bits before
/// them. `sequence` counts the batches of one direction from 1; a batch that begins with SnapshotBegin may skip numbers.
/// `applied` is the last sequence of the other direction that had been applied when the first record was written.
namespace mirror
{
constexpr unsigned protocolVersion = 1;
/// Ids that a client gives have this bit; those of a server have not.
constexpr quint32 clientIdBit = 0x80000000;

enum class RecordKind : quint8 { SnapshotBegin = 1, SnapshotEnd, Node, NodeGone, Value, ValueGone, Change };

struct BatchHeader {
    quint64 sequence;
    quint64 applied;
};
constexpr std::size_t batchHeaderBytes = 17;

/// Views into the batch, texts in UTF-8; what a kind does not have is empty.
struct Record {
    RecordKind kind{};
    quint32 id = 0;
    qint32 type = 0;
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

void appendHeader(std::string &out, const BatchHeader &header);
/// Appends what @p record has of its kind.
void appendRecord(std::string &out, const Record &record);

/// Nothing, when the bytes are no header of this version.
std::optional<BatchHeader> readHeader(values::ByteCursor &in);
/// Nothing, when the bytes that are left are no whole record of a kind that is known.
std::optional<Record> readRecord(values::ByteCursor &in);
} // namespace mirror
