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
    case RecordKind::SnapshotEnd:
        return true;
    case RecordKind::Node:
    case RecordKind::NodeGone:
        return readPath(in, record.path);
    case RecordKind::Value:
        return read(in, record.id) && read(in, record.type) && read(in, record.typeName) && readPath(in, record.path)
               && read(in, record.frames);
    case RecordKind::ValueGone:
        return read(in, record.id);
    case RecordKind::Change:
        return read(in, record.id) && read(in, record.frames);
    }
    return false;
}
} // namespace

void appendHeader(std::string &out, const BatchHeader &header)
{
    out.push_back(static_cast<char>(protocolVersion));
    append(out, header.sequence);
    append(out, header.applied);
}

void appendRecord(std::string &out, const Record &record)
{
    out.push_back(static_cast<char>(record.kind));
    switch (record.kind) {
    case RecordKind::SnapshotBegin:
    case RecordKind::SnapshotEnd:
        return;
    case RecordKind::Node:
    case RecordKind::NodeGone:
        return appendBytes(out, record.path);
    case RecordKind::Value:
        append(out, record.id);
        append(out, record.type);
        appendBytes(out, record.typeName);
        appendBytes(out, record.path);
        return appendBytes(out, record.frames);
    case RecordKind::ValueGone:
        return append(out, record.id);
    case RecordKind::Change:
        append(out, record.id);
        return appendBytes(out, record.frames);
    }
}

std::optional<BatchHeader> readHeader(values::ByteCursor &in)
{
    quint8 version = 0;
    BatchHeader header{};
    if (!read(in, version) || version != protocolVersion || !read(in, header.sequence) || !read(in, header.applied))
        return std::nullopt;
    return header;
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
