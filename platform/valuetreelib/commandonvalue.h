#pragma once

#include "valuetreelib/valuebase.h"

namespace values
{
/// One change of a value, to be executed, recorded or transmitted: how a class whose content is more than one number or
/// text tells its changes.
///
/// Borrows target and originator.
class VALUETREELIB_EXPORT ValueBase::CommandOnValue
{
public:
    CommandOnValue(quint8 commandId, ValueBase *target, IObserver *originator);

    // contract: slot order
    virtual ~CommandOnValue() = default;
    virtual void Execute() = 0;
    virtual quint8 GetCommandId() const;
    /// Appends the command's number; derived classes call this first, then append their payload.
    virtual void AddCommandString(std::string &out) const;
    virtual std::unique_ptr<CommandOnValue> Clone() const = 0;

    ValueBase *target() const { return value; }
    IObserver *originator() const { return source; }

protected:
    CommandOnValue(const CommandOnValue &) = default;
    CommandOnValue &operator=(const CommandOnValue &) = default;

private:
    quint8 id;
    ValueBase *value;
    IObserver *source;
};
} // namespace values
