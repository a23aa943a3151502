#include "apps/korvectl/treewatch.h"

#include "apps/korvectl/treelisting.h"

#include <algorithm>

namespace korvectl
{

TreeWatch::TreeWatch(const MirroredPart &part, Tell tell) : part(part), tell(std::move(tell))
{
    connect(&part.connection(), &VtConnectionObserver::si_connected, this, &TreeWatch::begin);
    connect(&part.connection(), &VtConnectionObserver::si_disconnected, this, &TreeWatch::lose);
    QMetaObject::invokeMethod(this, &TreeWatch::begin, Qt::QueuedConnection);
}

TreeWatch::~TreeWatch()
{
    for (values::TreeItem *const item : observed)
        item->DeleteObserver(this);
}

void TreeWatch::begin()
{
    if (isLive || !part.connection().isConnected())
        return; // the queued call of the constructor came after a loss, or a return
    tell({TreeEvent::Kind::Connected, {}});
    if (values::Node *const top = values::Tree::Instance().findNode(part.connection().getBaseClientPath()))
        observe(*top); // also where it is above the path, which may get a value again
    if (part.value())
        takeNew(*part.value());
    if (part.node())
        takeNew(*part.node());
    isLive = true;
    std::sort(notes.begin(), notes.end(),
              [](const TreeRow &left, const TreeRow &right) { return left.path < right.path; });
    tell({TreeEvent::Kind::Value, std::exchange(notes, {})});
}

void TreeWatch::lose()
{
    isLive = false;
    // The loss has changed all of them, which need not be said one by one.
    std::erase_if(notes, [](const TreeRow &row) { return row.state == values::ValueStateConnectionLost; });
    tellNotes();
    tell({TreeEvent::Kind::Lost, {}});
}

void TreeWatch::Update(Observable *subject, TChangeCode code)
{
    auto *const item = static_cast<values::TreeItem *>(subject);
    if (code == ChangeCodeDeleted) {
        if (item->isGone())
            observed.erase(item);
    } else if (!isLive) {
        return;
    } else if (!item->isNode()) {
        noteChange(static_cast<values::ValueBase &>(*item), code);
    } else if (code == ChangeCodeChildAdded) {
        for (values::TreeItem *const child : static_cast<values::Node &>(*item).GetTreeItems())
            if (observed.count(child) == 0 && isWatched(*child))
                takeNew(*child);
    }
}

void TreeWatch::observe(values::TreeItem &item)
{
    item.AddObserver(this);
    observed.insert(&item);
}

bool TreeWatch::isWatched(const values::TreeItem &item) const
{
    const QString path = item.GetPathName();
    const QString prefix = part.path().endsWith(u'/') ? part.path() : part.path() + u'/';
    return path == part.path() || path.startsWith(prefix);
}

void TreeWatch::takeNew(values::TreeItem &item)
{
    observe(item);
    if (item.isNode())
        for (values::TreeItem *const child : static_cast<values::Node &>(item).GetTreeItems())
            takeNew(*child);
    else
        note(static_cast<values::ValueBase &>(item));
}

void TreeWatch::noteChange(const values::ValueBase &value, TChangeCode code)
{
    // Nothing is shown of a selection's items and a number's limits.
    if (code != values::ChangeCodeLimits && code != values::ChangeCodeSelectionItems)
        note(value);
}

void TreeWatch::note(const values::ValueBase &value)
{
    if (notes.empty() && isLive)
        QMetaObject::invokeMethod(this, &TreeWatch::tellNotes, Qt::QueuedConnection);
    notes.emplace_back(value);
}

void TreeWatch::tellNotes()
{
    for (TreeRow &row : std::exchange(notes, {}))
        tell({TreeEvent::Kind::Change, {std::move(row)}});
}

} // namespace korvectl
