#pragma once

#include <QStringList>
#include <QVector>

namespace korvectl
{

/// Rows of texts in columns, under a line of titles.
///
/// Texts come from other machines: what would move the cursor of a terminal is shown as a question mark.
class Table
{
public:
    struct Column {
        QString title;
        Qt::Alignment alignment = Qt::AlignLeft;
        int leastWidth = 0;
    };

    explicit Table(const QVector<Column> &columns);

    /// One cell for each column.
    void addRow(const QStringList &cells);
    /// Each line with its end; no blanks at the end of a line.
    QString text() const;
    /// A row as it would stand there, which is not kept, and for which no column becomes wider.
    QString line(const QStringList &cells) const;

private:
    QString drawn(const QStringList &cells) const;

    QVector<Column> columns; ///< as wide as what is in them
    QVector<QStringList> rows;
};

} // namespace korvectl
