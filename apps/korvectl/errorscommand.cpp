#include "apps/korvectl/errorscommand.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/errororigin.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/table.h"

namespace korvectl
{

namespace
{

/// What stands in a sentence for a record, a device or the words of an exception.
const QString example = QStringLiteral("...");

QVector<NamedFlow> flowsFor(const CommandLine &line)
{
    QVector<NamedFlow> flows;
    for (const NamedFlow &named : allFlows()) {
        const bool isWanted = line.flow.isEmpty() ? isKnown(line.number, named.flow)
                                                  : line.flow == QLatin1String(named.name);
        if (isWanted)
            flows << named;
    }
    return flows;
}

QString textOf(unsigned long number, Flow flow)
{
    return KorveManagement::TraceError::toText(number, flow, example);
}

QString tableOf(const CommandLine &line, const QVector<NamedFlow> &flows)
{
    Table table({{QStringLiteral("FLOW")}, {QStringLiteral("SENTENCE")}});
    for (const NamedFlow &named : flows)
        table.addRow({QLatin1String(named.name), textOf(line.number, named.flow)});
    const QString origin = originOf(line.number);
    const QString from =
        QStringLiteral("%1 comes from: %2\n")
            .arg(QString::number(line.number), origin.isEmpty() ? QStringLiteral("nothing that is known") : origin);
    return flows.isEmpty() ? from + QStringLiteral("No work flow has a sentence for it.\n") : from + table.text();
}

QJsonObject objectOf(const CommandLine &line, const QVector<NamedFlow> &flows)
{
    QJsonArray sentences;
    for (const NamedFlow &named : flows)
        sentences.append(QJsonObject{{QStringLiteral("flow"), QLatin1String(named.name)},
                                     {QStringLiteral("known"), isKnown(line.number, named.flow)},
                                     {QStringLiteral("sentence"), textOf(line.number, named.flow)}});
    return {{QStringLiteral("number"), jsonNumber(line.number)},
            {QStringLiteral("origin"), originOf(line.number)},
            {QStringLiteral("sentences"), sentences}};
}

} // namespace

ExitCode explainError(const CommandLine &line)
{
    const QVector<NamedFlow> flows = flowsFor(line);
    if (flows.isEmpty() && originOf(line.number).isEmpty())
        throw Failure(ExitCode::Refused, QStringLiteral("Nothing is known of the number %1.").arg(line.number));
    print(line.json ? jsonText(objectOf(line, flows)) : tableOf(line, flows));
    return ExitCode::Success;
}

} // namespace korvectl
