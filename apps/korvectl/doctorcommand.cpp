#include "apps/korvectl/doctorcommand.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/doctor.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/table.h"
#include "apps/korvectl/units.h"


namespace korvectl
{

namespace
{

QJsonObject objectOf(const Link &link)
{
    QJsonObject object{{QStringLiteral("link"), link.name},
                       {QStringLiteral("address"), link.address},
                       {QStringLiteral("elapsedUs"), static_cast<qint64>(link.elapsed.count())},
                       {QStringLiteral("sound"), link.isSound()}};
    if (link.isSound()) {
        object.insert(QStringLiteral("finding"), link.finding);
    } else {
        object.insert(QStringLiteral("complaint"), link.complaint);
        object.insert(QStringLiteral("remedy"), link.remedy);
    }
    return object;
}

/// Rows come one by one, so the columns are as wide as the usual contents.
Table emptyTable()
{
    return Table({{QStringLiteral("LINK"), Qt::AlignLeft, 30}, // "recorder KORVE-" and an address
                  {QStringLiteral("ADDRESS"), Qt::AlignLeft, 21},
                  {QStringLiteral("TIME"), Qt::AlignRight, 7},
                  {QStringLiteral("STATE"), Qt::AlignLeft, 6},
                  {QStringLiteral("FOUND")}});
}

void printRow(const Table &table, const Link &link)
{
    const QString time = units::elapsed(static_cast<quint64>(link.elapsed.count()));
    if (link.isSound()) {
        print(table.line({link.name, link.address, time, QStringLiteral("ok"), link.finding}));
        return;
    }
    print(inRed(table.line({link.name, link.address, time, QStringLiteral("broken"), QString()})));
    complain(link.complaint);
    complain(link.remedy);
}

} // namespace

ExitCode examine(const CommandLine &line)
{
    const CentralService service(line.timeout);
    const Table table = emptyTable();
    QJsonArray links;
    Doctor doctor(service, line.subsystem, line.timeout, [&](const Link &link) {
        links.append(objectOf(link));
        if (!line.json)
            printRow(table, link);
    });
    if (!line.json)
        print(table.text());
    const bool isSound = doctor.examine();
    if (line.json)
        print(jsonText(links));
    return isSound ? ExitCode::Success : ExitCode::NotReachable;
}

} // namespace korvectl
