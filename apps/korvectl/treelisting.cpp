#include "apps/korvectl/treelisting.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/table.h"
#include "apps/korvectl/treerow.h"

#include "valuetreelib/valuebase.h"


#include <algorithm>

namespace korvectl
{

namespace
{

const values::ValueBase &valueOf(const values::TreeItem &item)
{
    return static_cast<const values::ValueBase &>(item);
}

void collect(const values::Node &node, bool recursive, std::vector<values::TreeItem *> &items)
{
    for (values::TreeItem *const item : node.GetTreeItems()) {
        items.push_back(item);
        if (item->isNode() && recursive)
            collect(static_cast<const values::Node &>(*item), true, items);
    }
}

QString nameOf(const values::TreeItem &item, const QString &path)
{
    const QString whole = item.GetPathName();
    const QString prefix = path.endsWith(u'/') ? path : path + u'/';
    const QString name = whole.startsWith(prefix) ? whole.mid(prefix.size()) : item.name();
    return item.isNode() ? name + u'/' : name;
}

} // namespace

std::vector<values::TreeItem *> itemsBelow(const values::Node &node, bool recursive)
{
    std::vector<values::TreeItem *> items;
    collect(node, recursive, items);
    std::stable_sort(items.begin(), items.end(), [](const values::TreeItem *left, const values::TreeItem *right) {
        return left->GetPathName() < right->GetPathName();
    });
    return items;
}

QString itemsTable(const std::vector<values::TreeItem *> &items, const QString &path)
{
    Table table({{QStringLiteral("NAME")},
                 {QStringLiteral("TYPE")},
                 {QStringLiteral("STATE")},
                 {.title = QStringLiteral("VALUE"), .mayBeCut = true}});
    for (const values::TreeItem *const item : items) {
        if (item->isNode()) {
            table.addRow({nameOf(*item, path), QStringLiteral("node"), QString(), QString()});
            continue;
        }
        const TreeRow row(valueOf(*item));
        table.addRow({nameOf(*item, path), row.type, wordsFor(row.state), row.text});
    }
    return table.text(resultWidth());
}

QString itemsJson(const std::vector<values::TreeItem *> &items)
{
    QJsonArray array;
    for (const values::TreeItem *const item : items)
        array.append(item->isNode() ? QJsonObject{{QStringLiteral("path"), item->GetPathName()},
                                                  {QStringLiteral("type"), QStringLiteral("node")}}
                                    : TreeRow(valueOf(*item)).object());
    return jsonText(array);
}

QString valuesTable(const std::vector<const values::ValueBase *> &values)
{
    Table table({{QStringLiteral("PATH")},
                 {QStringLiteral("TYPE")},
                 {QStringLiteral("STATE")},
                 {.title = QStringLiteral("VALUE"), .mayBeCut = true}});
    for (const values::ValueBase *const value : values) {
        const TreeRow row(*value);
        table.addRow({row.path, row.type, wordsFor(row.state), row.text});
    }
    return table.text(resultWidth());
}

QString valuesJson(const std::vector<const values::ValueBase *> &values)
{
    QJsonArray array;
    for (const values::ValueBase *const value : values)
        array.append(TreeRow(*value).object());
    return jsonText(array);
}

} // namespace korvectl
