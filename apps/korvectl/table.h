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
        bool mayBeCut = false; ///< of texts that people write, which a reader knows by their beginning
    };

    static constexpr int anyWidth = 0;

    explicit Table(const QVector<Column> &columns);

    /// One cell for each column.
    void addRow(const QStringList &cells);
    /// Each line with its end; no blanks at the end of a line. Columns that may be cut are, where lines would have more than
    /// @p width letters.
    QString text(int width = anyWidth) const;
    /// A row as it would stand there, which is not kept, and for which no column becomes wider.
    QString line(const QStringList &cells, int width = anyWidth) const;

private:
    QVector<int> ownWidths() const;
    QVector<int> cutTo(int width, QVector<int> widths) const;
    QString drawn(const QStringList &cells, const QVector<int> &widths, const QVector<int> &most) const;

    QVector<Column> columns; ///< as wide as what is in them
    QVector<QStringList> rows;
};

} // namespace korvectl
