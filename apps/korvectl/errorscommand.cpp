#include "apps/korvectl/errorscommand.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/table.h"

#include "connectionmanagement/errorcatalogue.h"

namespace korvectl
{

namespace
{

using KorveManagement::ErrorCatalogue;
using Tables = QVector<ErrorCatalogue::NamedTable>;

/// What stands in a sentence for a record, a device or the words of an exception.
const QString example = QStringLiteral("...");

Tables flowsFor(const CommandLine &line)
{
    Tables flows;
    for (const ErrorCatalogue::NamedTable &named : ErrorCatalogue::tables()) {
        const bool isWanted = line.flow.isEmpty() ? ErrorCatalogue::isKnown(line.number, named.table)
                                                  : line.flow == QLatin1String(named.name);
        if (isWanted)
            flows << named;
    }
    return flows;
}

QString tableOf(const CommandLine &line, const Tables &flows)
{
    Table table({{QStringLiteral("FLOW")}, {QStringLiteral("SENTENCE")}});
    for (const ErrorCatalogue::NamedTable &named : flows)
        table.addRow({QLatin1String(named.name), ErrorCatalogue::sentence(line.number, named.table, example)});
    const QString origin = ErrorCatalogue::origin(line.number);
    const QString from =
        QStringLiteral("%1 comes from: %2\n")
            .arg(QString::number(line.number), origin.isEmpty() ? QStringLiteral("nothing that is known") : origin);
    return flows.isEmpty() ? from + QStringLiteral("No work flow has a sentence for it.\n") : from + table.text();
}

QJsonObject objectOf(const CommandLine &line, const Tables &flows)
{
    QJsonArray sentences;
    for (const ErrorCatalogue::NamedTable &named : flows)
        sentences.append(
            QJsonObject{{QStringLiteral("flow"), QLatin1String(named.name)},
                        {QStringLiteral("known"), ErrorCatalogue::isKnown(line.number, named.table)},
                        {QStringLiteral("sentence"), ErrorCatalogue::sentence(line.number, named.table, example)}});
    return {{QStringLiteral("number"), jsonNumber(line.number)},
            {QStringLiteral("origin"), ErrorCatalogue::origin(line.number)},
            {QStringLiteral("sentences"), sentences}};
}

} // namespace

ExitCode explainError(const CommandLine &line)
{
    const Tables flows = flowsFor(line);
    if (flows.isEmpty() && ErrorCatalogue::origin(line.number).isEmpty())
        throw Failure(ExitCode::Refused, QStringLiteral("Nothing is known of the number %1.").arg(line.number));
    print(line.json ? jsonText(objectOf(line, flows)) : tableOf(line, flows));
    return ExitCode::Success;
}

} // namespace korvectl
