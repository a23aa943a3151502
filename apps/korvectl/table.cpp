#include "apps/korvectl/table.h"

#include "apps/korvectl/displaywidth.h"
#include "programs/printable.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace korvectl
{

namespace
{

constexpr int gap = 2; // between two columns

QStringList allPrintable(const QStringList &cells)
{
    QStringList row;
    for (const QString &cell : cells)
        row << programs::printable(cell);
    return row;
}

QString padding(int wanted, const QString &text)
{
    return QString(std::max(0, wanted - displayWidth(text)), u' ');
}

QString withoutBlanksAtEnd(QString line)
{
    while (line.endsWith(u' '))
        line.chop(1);
    return line;
}

} // namespace

Table::Table(const QVector<Column> &columns) : columns(columns)
{
    for (Column &column : this->columns)
        column.leastWidth = std::max(column.leastWidth, displayWidth(column.title));
}

void Table::addRow(const QStringList &cells)
{
    Q_ASSERT(cells.size() == columns.size());
    rows << allPrintable(cells);
    for (int column = 0; column < columns.size(); ++column)
        columns[column].leastWidth = std::max(columns[column].leastWidth, displayWidth(rows.last()[column]));
}

QString Table::text(int width) const
{
    QStringList titles;
    for (const Column &column : columns)
        titles << column.title;
    const QVector<int> widths = cutTo(width, ownWidths());
    QString lines = drawn(titles, widths, widths);
    for (const QStringList &row : rows)
        lines += drawn(row, widths, widths);
    return lines;
}

QString Table::line(const QStringList &cells, int width) const
{
    const QStringList row = allPrintable(cells);
    QVector<int> needed = ownWidths();
    for (int column = 0; column < columns.size(); ++column)
        needed[column] = std::max(needed[column], displayWidth(row[column]));
    return drawn(row, ownWidths(), cutTo(width, needed));
}

QVector<int> Table::ownWidths() const
{
    QVector<int> widths;
    for (const Column &column : columns)
        widths << column.leastWidth;
    return widths;
}

/// The widest that may be cut goes first.
QVector<int> Table::cutTo(int width, QVector<int> widths) const
{
    constexpr int least = 8;
    const int all = std::accumulate(widths.begin(), widths.end(), gap * (widths.size() - 1));
    int excess = width == anyWidth ? 0 : std::max(0, all - width);
    QVector<int> order;
    for (int column = 0; column < columns.size(); ++column)
        if (columns[column].mayBeCut)
            order << column;
    std::sort(order.begin(), order.end(), [&](int left, int right) { return widths[left] > widths[right]; });
    for (const int column : std::as_const(order)) {
        const int cut = std::clamp(widths[column] - least, 0, excess);
        widths[column] -= cut;
        excess -= cut;
    }
    return widths;
}

QString Table::drawn(const QStringList &cells, const QVector<int> &widths, const QVector<int> &most) const
{
    QStringList padded;
    for (int column = 0; column < columns.size(); ++column) {
        const QString cell = columns[column].mayBeCut ? cutToWidth(cells[column], most[column]) : cells[column];
        const bool isRight = columns[column].alignment == Qt::AlignRight;
        const QString blanks = padding(std::min(widths[column], most[column]), cell);
        padded << (isRight ? blanks + cell : cell + blanks);
    }
    return withoutBlanksAtEnd(padded.join(QString(gap, u' '))) + u'\n';
}

} // namespace korvectl
