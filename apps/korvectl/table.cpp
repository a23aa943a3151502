#include "apps/korvectl/table.h"

#include <algorithm>

namespace korvectl
{

namespace
{

QString printable(QString text)
{
    const auto movesCursor = [](QChar character) {
        return character.category() == QChar::Other_Control || character.category() == QChar::Other_Format;
    };
    std::replace_if(text.begin(), text.end(), movesCursor, QChar(u'?'));
    return text;
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
    QStringList row;
    for (const QString &cell : cells)
        row << printable(cell);
    rows << row;
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

QString Table::drawn(const QStringList &cells) const
{
    QStringList padded;
    for (int column = 0; column < columns.size(); ++column) {
        const bool isRight = columns[column].alignment == Qt::AlignRight;
        padded << (isRight ? cells[column].rightJustified(width(column)) : cells[column].leftJustified(width(column)));
    }
    return withoutBlanksAtEnd(padded.join(QLatin1String("  "))) + u'\n';
}

int Table::width(int column) const
{
    int widest = columns[column].title.size();
    for (const QStringList &row : rows)
        widest = std::max(widest, static_cast<int>(row[column].size()));
    return widest;
}

} // namespace korvectl
