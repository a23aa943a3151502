#include "apps/korvectl/watchprinter.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/units.h"

namespace korvectl
{

namespace
{

const char *nameOf(TreeEvent::Kind kind)
{
    switch (kind) {
    case TreeEvent::Kind::Connected:
        return "connected";
    case TreeEvent::Kind::Value:
        return "value";
    case TreeEvent::Kind::Change:
        return "change";
    case TreeEvent::Kind::Lost:
        return "lost";
    }
    return "";
}

QStringList cellsOf(const TreeRow &row)
{
    return {units::timeOfDay(), row.path, row.type, wordsFor(row.state), row.text};
}

Table emptyTable()
{
    return Table({{QStringLiteral("TIME")},
                  {QStringLiteral("PATH")},
                  {QStringLiteral("TYPE")},
                  {QStringLiteral("STATE")},
                  {.title = QStringLiteral("VALUE"), .mayBeCut = true}});
}

} // namespace

WatchPrinter::WatchPrinter(bool asJson, const QString &address) : asJson(asJson), address(address), table(emptyTable())
{
}

bool WatchPrinter::print(const TreeEvent &event)
{
    if (event.kind == TreeEvent::Kind::Change)
        ++changeCount;
    return asJson ? printObjects(event) : printLines(event);
}

bool WatchPrinter::printObjects(const TreeEvent &event) const
{
    QString lines;
    if (event.kind == TreeEvent::Kind::Connected || event.kind == TreeEvent::Kind::Lost)
        lines = eventLine(nameOf(event.kind), {{QStringLiteral("address"), address}});
    for (const TreeRow &row : event.rows)
        lines += eventLine(nameOf(event.kind), row.object());
    return korvectl::print(lines);
}

bool WatchPrinter::printLines(const TreeEvent &event)
{
    switch (event.kind) {
    case TreeEvent::Kind::Connected:
        if (connections++ > 0)
            complain(QStringLiteral("The value tree at %1 is there again.").arg(address));
        return true;
    case TreeEvent::Kind::Value:
        return printTable(event.rows);
    case TreeEvent::Kind::Change:
        return korvectl::print(table.line(cellsOf(event.rows.front()), resultWidth()));
    case TreeEvent::Kind::Lost:
        complain(
            QStringLiteral("The value tree at %1 is lost; its values are shown again when it is back.").arg(address));
        return true;
    }
    return true;
}

bool WatchPrinter::printTable(const std::vector<TreeRow> &rows)
{
    table = emptyTable();
    for (const TreeRow &row : rows)
        table.addRow(cellsOf(row));
    return korvectl::print(table.text(resultWidth()));
}

} // namespace korvectl
