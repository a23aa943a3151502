#pragma once

#include "apps/korvectl/table.h"
#include "apps/korvectl/treewatch.h"

namespace korvectl
{

/// Prints what a TreeWatch tells: lines of a table to standard output, and losses to standard error; or all of it as
/// objects, one per line.
class WatchPrinter
{
public:
    /// @p address is where the tree is.
    WatchPrinter(bool asJson, const QString &address);

    /// False when nobody reads it any more.
    bool print(const TreeEvent &event);
    /// How many changes were printed.
    int changes() const { return changeCount; }

private:
    bool printObjects(const TreeEvent &event) const;
    bool printLines(const TreeEvent &event);
    bool printTable(const std::vector<TreeRow> &rows);

    const bool asJson;
    const QString address;
    Table table;
    int connections = 0;
    int changeCount = 0;
};

} // namespace korvectl
