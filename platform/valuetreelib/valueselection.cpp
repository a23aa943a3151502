#include "valuetreelib/valueselection.h"

#include "coresupport/firstexception.h"
#include "valuetreelib/itemguard.h"
#include "valuetreelib/selectionstream.h"
#include "valuetreelib/streamformat.h"

#include <algorithm>

namespace values
{
ValueSelection::ValueSelection() = default;
ValueSelection::~ValueSelection() = default;

ValueType ValueSelection::GetType() const
{
    return ValueTypeSelection;
}

QString ValueSelection::GetTypeName() const
{
    return QStringLiteral("Selection");
}

void ValueSelection::Assign(const ValueBase &other)
{
    *this = dynamic_cast<const ValueSelection &>(other);
}

bool ValueSelection::Compare(const ValueBase *other) const
{
    const auto *const sameClass = dynamic_cast<const ValueSelection *>(other);
    return sameClass && *this == *sameClass;
}

bool ValueSelection::operator==(const ValueSelection &other) const
{
    return currentKey == other.currentKey && list == other.list && ValueBase::operator==(other);
}

const SelItemDesc *ValueSelection::find(long key) const
{
    const auto found = std::find_if(list.begin(), list.end(), [key](const SelItemDesc &item) { return item.key() == key; });
    return found == list.end() ? nullptr : &*found;
}

void ValueSelection::SetStringValue(QString text, IObserver *originator)
{
    const auto found =
        std::find_if(list.begin(), list.end(), [&text](const SelItemDesc &item) { return item.String() == text; });
    if (found == list.end())
        refuseContent(text);
    else
        setCurrent(found->key(), originator);
}

QString ValueSelection::GetStringValue() const
{
    const SelItemDesc *const current = find(currentKey);
    return current ? current->String() : QString();
}

void ValueSelection::setTexts(const QStringList &texts, IObserver *originator)
{
    std::vector<SelItemDesc> newItems;
    newItems.reserve(static_cast<std::size_t>(texts.size()));
    for (const QString &text : texts) {
        const auto key = static_cast<long>(newItems.size());
        newItems.emplace_back(text, static_cast<double>(key), key);
    }
    setItems(std::move(newItems), originator);
}

void ValueSelection::setItems(std::vector<SelItemDesc> newItems, IObserver *originator)
{
    if (newItems == list)
        return;
    list = std::move(newItems);
    const bool lost = currentKey != noKey && !find(currentKey);
    if (lost)
        currentKey = noKey;
    const ItemGuard guard(*this);
    FirstException trouble;
    trouble.attempt([&] { changed(ChangeCodeSelectionItems, originator); });
    if (lost && guard.isAlive())
        trouble.attempt([&] { changed(ChangeCodeValue, originator); });
    trouble.rethrow();
}

void ValueSelection::addItem(const QString &text, double number, long key, IObserver *originator)
{
    std::vector<SelItemDesc> newItems = list;
    if (const SelItemDesc *const present = find(key))
        newItems[static_cast<std::size_t>(present - list.data())] = SelItemDesc(text, number, key);
    else
        newItems.emplace_back(text, number, key);
    setItems(std::move(newItems), originator);
}

void ValueSelection::clearItems(IObserver *originator)
{
    setItems({}, originator);
}

void ValueSelection::selectKey(long key, IObserver *originator)
{
    if (find(key))
        setCurrent(key, originator);
    else
        refuseContent(QString::number(key));
}

void ValueSelection::SelectIndex(long position, IObserver *originator)
{
    if (position >= 0 && position < static_cast<long>(list.size()))
        setCurrent(list[static_cast<std::size_t>(position)].key(), originator);
    else
        refuseContent(QStringLiteral("position %1").arg(position));
}

void ValueSelection::setCurrent(long key, IObserver *originator)
{
    if (key == currentKey)
        return;
    currentKey = key;
    changed(ChangeCodeValue, originator);
}

bool ValueSelection::SetCommandString(quint8 command, ByteCursor payload, IObserver *originator)
{
    switch (command & ~forcedCommandFlag) {
    case SelectKeyCommand:
        return applyKey(command, payload, originator);
    case SetSelectionItemsCommand:
        return applyItems(command, payload, originator);
    default:
        return ValueBase::SetCommandString(command, payload, originator);
    }
}

bool ValueSelection::applyKey(quint8 command, ByteCursor payload, IObserver *originator)
{
    qint64 key;
    if (!readKey(payload, key) || !payload.isAtEnd())
        return refuseCommand(command);
    if ((command & forcedCommandFlag) && key == currentKey)
        NotifyObservers(ChangeCodeValue, originator);
    else if (key == noKey)
        setCurrent(noKey, originator); // the peer's current item has left its list
    else
        selectKey(key, originator);
    return true;
}

bool ValueSelection::applyItems(quint8 command, ByteCursor payload, IObserver *originator)
{
    std::vector<SelItemDesc> received;
    if (!readItems(payload, received) || !payload.isAtEnd())
        return refuseCommand(command);
    if ((command & forcedCommandFlag) && received == list)
        NotifyObservers(ChangeCodeSelectionItems, originator);
    else
        setItems(std::move(received), originator);
    return true;
}

void ValueSelection::AddCommandForTransmission(TChangeCode code, bool forced, std::string &out) const
{
    const quint8 flag = forced ? forcedCommandFlag : 0;
    if (code == ChangeCodeValue)
        appendFrame(out, SelectKeyCommand | flag, [this](std::string &payload) { appendKey(payload, currentKey); });
    else if (code == ChangeCodeSelectionItems)
        appendFrame(out, SetSelectionItemsCommand | flag, [this](std::string &payload) { appendItems(payload, list); });
    else
        ValueBase::AddCommandForTransmission(code, forced, out);
}

void ValueSelection::AddObjectStateStringForTransmission(std::string &out) const
{
    ValueSelection::AddCommandForTransmission(ChangeCodeSelectionItems, false, out);
    ValueSelection::AddCommandForTransmission(ChangeCodeValue, false, out);
    ValueBase::AddObjectStateStringForTransmission(out);
}
} // namespace values
