#include "tests/korvebase/datatable.h"

#include <QFile>
#include <QRegularExpression>

#include <stdexcept>

namespace
{
QStringList wordsOf(const QString &line)
{
    static const QRegularExpression word(QStringLiteral("\"([^\"]*)\"|([^\\s\"]+)"));
    QStringList words;
    for (auto match = word.globalMatch(line); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        words.append(found.captured(found.lastCapturedIndex()));
    }
    return words;
}
} // namespace

QVector<QStringList> readTable(const QString &fileName)
{
    QFile file(QStringLiteral(KORVEBASE_TABLES "/") + fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        throw std::runtime_error("no table " + file.fileName().toStdString());
    QVector<QStringList> rows;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (!line.isEmpty() && !line.startsWith(QLatin1Char('#')))
            rows.append(wordsOf(line));
    }
    return rows;
}
