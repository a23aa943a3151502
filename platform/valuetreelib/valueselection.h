#pragma once

#include "valuetreelib/selitemdesc.h"
#include "valuetreelib/valuebase.h"

#include <QStringList>

#include <vector>

namespace values
{
/// One of a list of texts, selected by its key.
class VALUETREELIB_EXPORT ValueSelection : public ValueBase
{
public:
    /// The current key of a new value, and when the current item has left the list.
    static constexpr long noKey = -1;

    ValueSelection();
    ~ValueSelection() override;
    /// Selects the first item with that text.
    void SetStringValue(QString text, IObserver *originator) override;
    /// The text of the current item; empty when there is none.
    QString GetStringValue() const override;
    using ValueBase::SetCommandString;
    bool SetCommandString(quint8 command, ByteCursor payload, IObserver *originator) override;
    ValueType GetType() const override;
    QString GetTypeName() const override;
    void Assign(const ValueBase &other) override;
    bool Compare(const ValueBase *other) const override;
    void AddObjectStateStringForTransmission(std::string &out) const override;
    void AddCommandForTransmission(TChangeCode code, bool forced, std::string &out) const override;

    /// Replaces the list; keys and numbers are 0, 1, 2... A current item whose key is still there stays selected. So for
    /// the other operations on the list.
    void setTexts(const QStringList &texts, IObserver *originator);
    void setItems(std::vector<SelItemDesc> newItems, IObserver *originator);
    /// An item with a key that is there already takes that one's place.
    void addItem(const QString &text, double number, long key, IObserver *originator);
    void clearItems(IObserver *originator);
    /// A key that is not in the list, or a position outside of it, is traced and changes nothing.
    void selectKey(long key, IObserver *originator);
    void SelectIndex(long position, IObserver *originator);

    long GetCurrentKey() const { return currentKey; }
    const std::vector<SelItemDesc> &items() const { return list; }

    bool operator==(const ValueSelection &other) const;

private:
    ValueSelection &operator=(const ValueSelection &other) = default;
    const SelItemDesc *find(long key) const;
    void setCurrent(long key, IObserver *originator);
    bool applyKey(quint8 command, ByteCursor payload, IObserver *originator);
    bool applyItems(quint8 command, ByteCursor payload, IObserver *originator);

    std::vector<SelItemDesc> list;
    long currentKey = noKey;
};
} // namespace values
