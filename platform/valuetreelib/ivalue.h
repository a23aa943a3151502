#pragma once

#include "valuetreelib/isupporttransaction.h"
#include "valuetreelib/valuecodes.h"

#include <QString>

namespace values
{
/// What every value can do, whatever it stores. A setter tells all observers but its originator.
class IValue : public ISupportTransaction
{
public:
    /// A text that does not stand for a content of this class is traced and changes nothing.
    virtual void SetStringValue(QString text, IObserver *originator) = 0;
    virtual QString GetStringValue() const = 0;
    virtual TValueState GetState() const = 0;
    virtual void SetState(TValueState state, IObserver *originator) = 0;
};
} // namespace values
