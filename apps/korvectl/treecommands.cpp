#include "apps/korvectl/treecommands.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/interruption.h"
#include "apps/korvectl/mirroredpart.h"
#include "apps/korvectl/treelisting.h"
#include "apps/korvectl/treewatch.h"
#include "apps/korvectl/watchprinter.h"

#include "valuetreelib/valuebase.h"

#include <QEventLoop>

namespace korvectl
{

namespace
{

MirroredPart mirrorFor(const CommandLine &line, MirroredPart::Look look)
{
    const CentralService service(line.timeout);
    const VtConnectData server = treeServerOf(service, line.subsystem, Deadline(line.timeout));
    return MirroredPart(server, line.path, look, line.timeout);
}

/// The value at the path, and all below it.
std::vector<const values::ValueBase *> valuesOf(const MirroredPart &part)
{
    std::vector<const values::ValueBase *> found;
    if (part.value())
        found.push_back(part.value());
    if (part.node())
        for (const values::TreeItem *const item : itemsBelow(*part.node(), true))
            if (!item->isNode())
                found.push_back(static_cast<const values::ValueBase *>(item));
    return found;
}

} // namespace

ExitCode listTree(const CommandLine &line)
{
    const MirroredPart part = mirrorFor(line, MirroredPart::Look::AtNode);
    std::vector<values::TreeItem *> items;
    if (part.node())
        items = itemsBelow(*part.node(), line.recursive);
    else
        items.push_back(part.value());
    print(line.json ? itemsJson(items) : itemsTable(items, part.path()));
    return ExitCode::Success;
}

ExitCode getFromTree(const CommandLine &line)
{
    const MirroredPart part = mirrorFor(line, MirroredPart::Look::AtItem);
    const std::vector<const values::ValueBase *> found = valuesOf(part);
    print(line.json ? valuesJson(found) : valuesTable(found));
    return ExitCode::Success;
}

ExitCode watchTree(const CommandLine &line)
{
    const MirroredPart part = mirrorFor(line, MirroredPart::Look::AtNode);
    WatchPrinter printer(line.json, textOf(part.connection().connData()));
    QEventLoop loop;
    TreeWatch watch(part, [&](const TreeEvent &event) {
        const bool isLastChange = event.kind == TreeEvent::Kind::Change && printer.changes() + 1 == line.changeLimit;
        if (!printer.print(event) || isLastChange)
            loop.quit();
    });
    runUntil(Interruption(), loop, line.watchTime);
    return ExitCode::Success;
}

} // namespace korvectl
