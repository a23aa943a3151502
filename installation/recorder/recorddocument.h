#pragma once

#include "installation/recorder/record.h"

namespace installation::recorder
{

/// The meta data of @p record as its `.sigmf-meta` file holds it, see docs/dataformats.md.
QByteArray toDocument(const Record &record);
/// The record in @p bytes. @p name is that of the file.
/// @throws RecorderError with `ekRECORD_CORRUPTED` when they hold anything else.
Record fromDocument(const QByteArray &bytes, const QString &name);
/// Whether a recorder of ours wrote it.
bool isOurDocument(const QJsonObject &sigmf);

} // namespace installation::recorder
