#include "apps/korvectl/table.h"

#include "apps/korvectl/displaywidth.h"
#include "programs/printable.h"

#include <algorithm>

namespace korvectl
{

namespace
{

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

QString Table::text() const
{
    QStringList titles;
    for (const Column &column : columns)
        titles << column.title;
    QString lines = drawn(titles);
    for (const QStringList &row : rows)
        lines += drawn(row);
    return lines;
}

QString Table::line(const QStringList &cells) const
{
    return drawn(allPrintable(cells));
}

QString Table::drawn(const QStringList &cells) const
{
    QStringList padded;
    for (int column = 0; column < columns.size(); ++column) {
        const bool isRight = columns[column].alignment == Qt::AlignRight;
        const QString blanks = padding(columns[column].leastWidth, cells[column]);
        padded << (isRight ? blanks + cells[column] : cells[column] + blanks);
    }
    return withoutBlanksAtEnd(padded.join(QLatin1String("  "))) + u'\n';
}

} // namespace korvectl
