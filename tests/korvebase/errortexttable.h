#pragma once

#include <QMap>
#include <QString>

/// The sentences of one flow, as typed by hand in tests/data/errortexts. Throws std::runtime_error when there is no
/// such file, or a line of it is not NUMBER, tab, |TEXT|.
class ErrorTextTable
{
public:
    explicit ErrorTextTable(const QString &flow);

    /// The sentence of @p errorId with its marks, or the one of all numbers without a line.
    QString text(unsigned long errorId) const { return texts.value(errorId, fallback); }
    bool lists(unsigned long errorId) const { return texts.contains(errorId); }
    int size() const { return texts.size(); }

private:
    void addLine(const QString &line);

    QMap<unsigned long, QString> texts;
    QString fallback;
};
