#pragma once

#include "orbconnection/mirrorwire.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/valuebase.h"

namespace mirror
{
/// Hands the record that announces @p value to @p write; @p scratch is used for its bytes.
template <typename Write>
void writeValue(const values::ValueBase &value, quint32 id, const QByteArray &relativePath, std::string &scratch,
                const Write &write)
{
    scratch.clear();
    value.AddObjectStateStringForTransmission(scratch);
    const QByteArray typeName = value.GetTypeName().toUtf8();
    write(Record{.kind = RecordKind::Value, .id = id, .type = value.GetType(), .typeName = viewOf(typeName),
                 .path = viewOf(relativePath), .frames = scratch});
}

/// Makes a value as @p record says and adds it at @p absolutePath. A class that this program does not know is traced
/// and left out. False, when the record's frames are malformed.
bool addValue(values::Tree &tree, const QString &absolutePath, const Record &record, IObserver *originator);
} // namespace mirror
