#include "valuetreelib/itemobservation.h"

#include <QHash>
#include <QPair>

namespace values
{
namespace
{
using Place = QPair<TreeItem *, IObserver *>;

/// How many observations stand behind an observer's place. Never destroyed, as the tree.
QHash<Place, int> &reasons()
{
    static auto &counts = *new QHash<Place, int>;
    return counts;
}

/// Whether that was the last one.
bool removeReason(const Place &place)
{
    const auto count = reasons().find(place);
    if (--*count > 0)
        return false;
    reasons().erase(count);
    return true;
}
} // namespace

ItemObservation::ItemObservation(IObserver *observer) : observer(observer)
{
}

ItemObservation::ItemObservation(const ItemObservation &other) : observer(other.observer)
{
    observe(other.item);
}

ItemObservation &ItemObservation::operator=(const ItemObservation &other)
{
    const ItemObservation newOne(other); // first, so that an observer that stays keeps its place
    observe(nullptr);
    observer = newOne.observer;
    observe(newOne.item);
    return *this;
}

ItemObservation::~ItemObservation()
{
    observe(nullptr);
}

void ItemObservation::observe(TreeItem *newItem)
{
    if (!observer || newItem == item)
        return;
    if (item) {
        item->removeDeleteObserver(this);
        if (removeReason({item, observer}))
            item->DeleteObserver(observer);
    }
    item = newItem;
    if (item) {
        item->addDeleteObserver(this);
        ++reasons()[{item, observer}];
        item->AddObserver(observer);
    }
}

void ItemObservation::Update(Observable *, TChangeCode code)
{
    if (code != ChangeCodeDeleted || !item)
        return;
    removeReason({item, observer});
    item = nullptr;
}
} // namespace values
