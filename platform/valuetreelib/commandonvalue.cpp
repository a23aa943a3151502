#include "valuetreelib/commandonvalue.h"

namespace values
{
ValueBase::CommandOnValue::CommandOnValue(quint8 commandId, ValueBase *target, IObserver *originator)
    : id(commandId), value(target), source(originator)
{
}

quint8 ValueBase::CommandOnValue::GetCommandId() const
{
    return id;
}

void ValueBase::CommandOnValue::AddCommandString(std::string &out) const
{
    out.push_back(static_cast<char>(id));
}
} // namespace values
