#include "apps/korvectl/table.h"

#include "apps/korvectl/displaywidth.h"

#include <algorithm>

namespace korvectl
{

namespace
{

QStringList allPrintable(const QStringList &cells)
{
    QStringList row;
    for (const QString &cell : cells)
        row << printable(cell);
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

void Table::addRow(const QStringList &cells)
{
    Q_ASSERT(cells.size() == columns.size());
    rows << allPrintable(cells);
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
        const QString blanks = padding(width(column), cells[column]);
        padded << (isRight ? blanks + cells[column] : cells[column] + blanks);
    }
    return withoutBlanksAtEnd(padded.join(QLatin1String("  "))) + u'\n';
}

int Table::width(int column) const
{
    int widest = std::max(columns[column].leastWidth, displayWidth(columns[column].title));
    for (const QStringList &row : rows)
        widest = std::max(widest, displayWidth(row[column]));
    return widest;
}

} // namespace korvectl
