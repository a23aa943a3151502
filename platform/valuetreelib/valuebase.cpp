#include "valuetreelib/valuebase.h"

#include "coresupport/firstexception.h"
#include "coresupport/trace.h"
#include "valuetreelib/commandframe.h"
#include "valuetreelib/commandonvalue.h"
#include "valuetreelib/icommandlistoptimizer.h"
#include "valuetreelib/itemguard.h"
#include "valuetreelib/mainthread.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/treelisteners.h"

#include <initializer_list>

namespace values
{
namespace
{
constexpr char sourceName[] = "valuetreelib/valuebase";

constexpr unsigned forcedBit = 1 << 0;
constexpr unsigned otherBit = 1 << 1; // a code that stands for no content
constexpr unsigned maxTransactions = (1 << 20) - 1;

constexpr unsigned heldBit(TChangeCode code)
{
    return code >= ChangeCodeState && code <= ChangeCodeSelectionItems ? 1u << code : otherBit;
}
} // namespace

ValueBase::ValueBase() : TreeItem(QString(), false)
{
}

ValueBase::~ValueBase() = default;

ValueBase &ValueBase::operator=(const ValueBase &other)
{
    bits.state = other.bits.state;
    return *this;
}

void ValueBase::SetName(const QString &newName, IObserver *)
{
    if (parentNode)
        traceAt(TraceLevel::Normal, sourceName, [this] { return path + QStringLiteral(": in the tree, keeps its name"); });
    else
        path = newName;
}

TValueState ValueBase::GetState() const
{
    return static_cast<TValueState>(bits.state);
}

void ValueBase::SetState(TValueState state, IObserver *originator)
{
    Q_ASSERT(isMainThread());
    if (state < 0 || state > greatestState) {
        refuseContent(QStringLiteral("the state %1").arg(state));
        return;
    }
    if (bits.state == static_cast<unsigned>(state))
        return;
    bits.state = static_cast<unsigned>(state);
    if (state != ValueStateDeleted)
        return changed(ChangeCodeState, originator);
    const ItemGuard guard(*this);
    FirstException trouble;
    trouble.attempt([this] { tellHolders(ChangeCodeState); });
    if (guard.isAlive())
        trouble.attempt([&] { changed(ChangeCodeState, originator); });
    trouble.rethrow();
}

void ValueBase::HasChanged(TChangeCode code, IObserver *originator)
{
    NotifyObservers(code, originator);
}

void ValueBase::NotifyObservers(TChangeCode code, IObserver *originator)
{
    notify(code, originator, true);
}

void ValueBase::notify(TChangeCode code, IObserver *originator, bool forced)
{
    Q_ASSERT(isMainThread());
    if (bits.transactions && code != ChangeCodeDeleted) {
        hold(code, forced);
        return;
    }
    tellListeners(code, originator, forced);
    Observable::NotifyObservers(code, originator);
}

void ValueBase::hold(TChangeCode code, bool forced)
{
    bits.heldCodes = bits.heldCodes | heldBit(code) | (forced ? forcedBit : 0);
}

void ValueBase::tellListeners(TChangeCode code, IObserver *originator, bool forced)
{
    if (Tree *const home = tree())
        home->listeners().valueChanged({*this, code, forced, originator});
}

void ValueBase::StartTransaction(IObserver *)
{
    Q_ASSERT(isMainThread());
    if (bits.transactions < maxTransactions)
        bits.transactions = bits.transactions + 1;
}

void ValueBase::EndTransaction(TChangeCode code, IObserver *originator)
{
    Q_ASSERT(isMainThread());
    if (!bits.transactions) {
        traceAt(TraceLevel::Normal, sourceName, [this] { return path + QStringLiteral(": no transaction to end"); });
        return;
    }
    bits.transactions = bits.transactions - 1;
    const unsigned held = bits.heldCodes;
    if (bits.transactions || !held)
        return;
    bits.heldCodes = 0;
    tellListenersOfHeld(held, code, originator);
    const ItemGuard guard(*this);
    FirstException trouble;
    if ((held & heldBit(ChangeCodeState)) && code != ChangeCodeState)
        trouble.attempt([&] { Observable::NotifyObservers(ChangeCodeState, originator); });
    if (guard.isAlive())
        trouble.attempt([&] { Observable::NotifyObservers(code, originator); });
    trouble.rethrow();
}

void ValueBase::tellListenersOfHeld(unsigned held, TChangeCode endCode, IObserver *originator)
{
    // A receiver needs the items before the key, and may believe the content only with the state.
    for (const TChangeCode code : {ChangeCodeSelectionItems, ChangeCodeLimits, ChangeCodeValue, ChangeCodeState}) {
        if (held & heldBit(code))
            tellListeners(code, originator, held & forcedBit);
    }
    if (held & otherBit)
        tellListeners(endCode, originator, held & forcedBit);
}

bool ValueBase::IsTransactionActive() const
{
    return bits.transactions;
}

void ValueBase::setOptimized(bool on)
{
    bits.optimized = on;
}

bool ValueBase::isOptimized() const
{
    return bits.optimized;
}

bool ValueBase::Record() const
{
    Tree *const home = tree();
    return home && home->listeners().hear(*this);
}

void ValueBase::RecordCommand(const CommandOnValue &command)
{
    if (Tree *const home = tree())
        home->listeners().commandRecorded(*this, command);
}
} // namespace values
