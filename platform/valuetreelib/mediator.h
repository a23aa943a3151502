#pragma once

#include "coresupport/observable.h"
#include "valuetreelib/valuetreelib_export.h"

namespace values
{
class MediatorCtrl;

/// Observes one observable on behalf of a controller. Made on the heap; when its observable goes, it has to forget that
/// and delete itself.
class VALUETREELIB_EXPORT Mediator : public IObserver
{
public:
    Mediator(const Mediator &) = delete;
    Mediator &operator=(const Mediator &) = delete;
    ~Mediator() override;

    MediatorCtrl *controller() const { return owner; }
    /// Null after forgetObserved().
    Observable *observed() const { return subject; }

protected:
    /// Observes @p observable, and tells @p controller of its creation.
    Mediator(MediatorCtrl *controller, Observable *observable);
    /// Ends the observation.
    void forgetObserved();

private:
    MediatorCtrl *owner;
    Observable *subject;
};
} // namespace values
