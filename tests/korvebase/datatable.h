#pragma once

#include <QStringList>
#include <QVector>

/// The rows of a table in tests/data/korvebase, without comments and empty lines; the words of a row are separated by
/// blanks, and a text in double quotes is one word. Throws std::runtime_error when there is no such table.
QVector<QStringList> readTable(const QString &fileName);
