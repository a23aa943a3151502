#include "orbconnection/mirrorwire.h"

#include <QtEndian>

namespace mirror
{
namespace
{
template <typename Number> void append(std::string &out, Number number)
{
    const Number wire = qToLittleEndian(number);
    out.append(reinterpret_cast<const char *>(&wire), sizeof wire);
}

void appendBytes(std::string &out, std::string_view bytes)
{
    append(out, static_cast<quint32>(bytes.size()));
    out.append(bytes);
}

template <typename Number> bool read(values::ByteCursor &in, Number &number)
{
    const char *const bytes = in.take(sizeof number);
    if (bytes)
        number = qFromLittleEndian<Number>(bytes);
    return bytes;
}

bool read(values::ByteCursor &in, std::string_view &bytes)
{
    quint32 size = 0;
    const char *const begin = read(in, size) ? in.take(size) : nullptr;
    if (begin)
        bytes = {begin, size};
    return begin;
}

/// Another way to write a path could lead out of the mirrored node, or to its top.
bool readPath(values::ByteCursor &in, std::string_view &path)
{
    return read(in, path) && !path.starts_with('/') && !path.ends_with('/') && path.find("//") == path.npos;
}

bool readContent(values::ByteCursor &in, Record &record)
{
    switch (record.kind) {
    case RecordKind::SnapshotBegin:
    case RecordKind::Applied:
        return read(in, record.count);
    case RecordKind::SnapshotEnd:
        return true;
    case RecordKind::Path:
        return readPath(in, record.path);
    case RecordKind::Node:
    case RecordKind::NodeGone:
    case RecordKind::ValueGone:
        return read(in, record.number);
    case RecordKind::Value:
        return read(in, record.number) && read(in, record.type) && read(in, record.typeName) && read(in, record.frames);
    case RecordKind::Change:
        return read(in, record.number) && read(in, record.frames);
    case RecordKind::Set:
        return read(in, record.number) && read(in, record.type) && read(in, record.frames);
    }
    return false;
}
} // namespace

void appendHeader(std::string &out, quint64 sequence)
{
    out.push_back(static_cast<char>(protocolVersion));
    append(out, sequence);
}

void appendRecord(std::string &out, const Record &record)
{
    out.push_back(static_cast<char>(record.kind));
    switch (record.kind) {
    case RecordKind::SnapshotBegin:
    case RecordKind::Applied:
        return append(out, record.count);
    case RecordKind::SnapshotEnd:
        return;
    case RecordKind::Path:
        return appendBytes(out, record.path);
    case RecordKind::Node:
    case RecordKind::NodeGone:
    case RecordKind::ValueGone:
        return append(out, record.number);
    case RecordKind::Value:
        append(out, record.number);
        append(out, record.type);
        appendBytes(out, record.typeName);
        return appendBytes(out, record.frames);
    case RecordKind::Change:
        append(out, record.number);
        return appendBytes(out, record.frames);
    case RecordKind::Set:
        append(out, record.number);
        append(out, record.type);
        return appendBytes(out, record.frames);
    }
}

std::optional<quint64> readHeader(values::ByteCursor &in)
{
    quint8 version = 0;
    quint64 sequence = 0;
    if (!read(in, version) || version != protocolVersion || !read(in, sequence))
        return std::nullopt;
    return sequence;
}

std::optional<Record> readRecord(values::ByteCursor &in)
{
    quint8 kind = 0;
    Record record;
    if (!read(in, kind))
        return std::nullopt;
    record.kind = static_cast<RecordKind>(kind);
    if (!readContent(in, record))
        return std::nullopt;
    return record;
}
} // namespace mirror
