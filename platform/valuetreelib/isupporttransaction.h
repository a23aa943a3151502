#pragma once

#include "coresupport/iobserver.h"
#include "valuetreelib/ioptimizetrigger.h"

namespace values
{
/// A value whose changes can be told as one.
class ISupportTransaction : public IOptimizeTrigger
{
public:
    /// Begins to hold back notifications. Transactions nest: the outermost one counts.
    virtual void StartTransaction(IObserver *originator) = 0;
    /// Ends the innermost transaction; the outermost one tells all but @p originator @p code, once, if something was
    /// held back. A held change of state is told before, since holders decide by it.
    virtual void EndTransaction(TChangeCode code, IObserver *originator) = 0;
    virtual bool IsTransactionActive() const = 0;
};
} // namespace values
