#pragma once

#include "installation/recorder/recordstore.h"

#include <QTemporaryDir>

/// A record with something in every member; id, size and positions are those of @p samples when it is stored.
installation::recorder::Record fullRecord(const QString &name);
/// Stores fullRecord() with these samples and returns its id.
QString storeRecord(installation::recorder::RecordStore &store, const QString &name, const QByteArray &samples);
/// Names and contents of the folder @p path.
QMap<QString, QByteArray> contentOf(const QString &path);
void writeFile(const QString &path, const QByteArray &bytes);
QByteArray readFile(const QString &path);
