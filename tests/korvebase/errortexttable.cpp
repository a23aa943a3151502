#include "tests/korvebase/errortexttable.h"

#include <QFile>
#include <QRegularExpression>

#include <stdexcept>

ErrorTextTable::ErrorTextTable(const QString &flow)
{
    QFile file(QStringLiteral(ERROR_TEXTS "/%1.txt").arg(flow));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no table " + file.fileName().toStdString());
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines)
        if (!line.startsWith(u'#'))
            addLine(line);
    if (fallback.isNull())
        throw std::runtime_error("no text for other numbers in " + file.fileName().toStdString());
}

void ErrorTextTable::addLine(const QString &line)
{
    static const QRegularExpression form(QStringLiteral("^(\\d+|other)\t\\|(.+)\\|$"));
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch() || (match.captured(1) == u"other" && !fallback.isNull()))
        throw std::runtime_error("unreadable line: " + line.toStdString());
    if (match.captured(1) == u"other")
        fallback = match.captured(2);
    else if (texts.contains(match.captured(1).toULong()))
        throw std::runtime_error("twice: " + line.toStdString());
    else
        texts.insert(match.captured(1).toULong(), match.captured(2));
}
