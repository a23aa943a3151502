#include "tests/faults/scripttable.h"

#include <QFile>
#include <QRegularExpression>

#include <stdexcept>

namespace
{

/// What stands between quotation marks, as in `"a" "b"`.
std::vector<std::string> quotedTexts(const QString &text)
{
    static const QRegularExpression quoted(QStringLiteral("\"([^\"]*)\""));
    std::vector<std::string> texts;
    for (auto match = quoted.globalMatch(text); match.hasNext();)
        texts.push_back(match.next().captured(1).toStdString());
    return texts;
}

ScriptRow rowOf(const QString &line)
{
    static const QRegularExpression form(
        QStringLiteral("^(?:(on .*?)\\s+# |#: )(\\w+) -> (\\S+|\"[^\"]*\")(?: in (\\w+))?((?: \"[^\"]*\")*)$"));
    const QRegularExpressionMatch found = form.match(line);
    if (!found.hasMatch())
        throw std::runtime_error("no row: " + line.toStdString());
    const auto part = [&](int number) { return found.captured(number).toStdString(); };
    QString outcome = found.captured(3);
    if (outcome.startsWith(u'"'))
        outcome = outcome.mid(1).chopped(1);
    return {part(1), part(2), outcome.toStdString(), part(4), quotedTexts(found.captured(5))};
}

} // namespace

QString scriptPath(const std::string &script)
{
    return QStringLiteral(FAULT_SCRIPTS "/") + QString::fromStdString(script);
}

std::vector<ScriptRow> rowsOf(const std::string &script)
{
    QFile file(scriptPath(script));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no script " + file.fileName().toStdString());
    std::vector<ScriptRow> rows;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n'))
        if (!line.isEmpty() && (!line.startsWith(u'#') || line.startsWith(QLatin1String("#:"))))
            rows.push_back(rowOf(line));
    return rows;
}
