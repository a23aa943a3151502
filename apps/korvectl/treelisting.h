#pragma once

#include "valuetreelib/node.h"

#include <QString>

#include <vector>

/// Parts of the value tree as text for standard output, with the end of its last line.
namespace korvectl
{

/// The items below @p node, sorted by their paths: those directly below, or all.
std::vector<values::TreeItem *> itemsBelow(const values::Node &node, bool recursive);

/// Nodes, whose names end in "/", and values. Names are relative to @p path.
QString itemsTable(const std::vector<values::TreeItem *> &items, const QString &path);
/// An array of objects with "path" and "type", which is "node", or as in valuesJson().
QString itemsJson(const std::vector<values::TreeItem *> &items);

QString valuesTable(const std::vector<const values::ValueBase *> &values);
/// An array of objects as TreeRow::object() has them.
QString valuesJson(const std::vector<const values::ValueBase *> &values);

} // namespace korvectl
