#pragma once

#include "valuetreelib/valuetreelib_export.h"

#include <vector>

class Observable;

namespace values
{
class Mediator;

/// Looks after several observables through one mediator each.
///
/// The mediators delete themselves when their observables go; those that are left, the controller deletes.
class VALUETREELIB_EXPORT MediatorCtrl
{
public:
    MediatorCtrl() = default;
    MediatorCtrl(const MediatorCtrl &) = delete;
    MediatorCtrl &operator=(const MediatorCtrl &) = delete;

    // contract: slot order
    virtual ~MediatorCtrl();
    virtual void NotifyCreated(Mediator *mediator);
    virtual void NotifyDeleted(Mediator *mediator);
    /// The derived controller's factory; may return null. A mediator belongs to the controller as soon as it exists.
    virtual Mediator *CreateMediator(Observable *observable) = 0;

    /// The mediator for @p observable, or null.
    Mediator *GetMediator(const Observable *observable) const;
    /// Deletes the mediators that there are now.
    void Clear();
    /// True while the controller is torn down: a mediator must not call back.
    bool IsDestructing() const { return destructing; }

protected:
    /// For the destructor of a derived class whose members its mediators use.
    void startDestruction();

private:
    std::vector<Mediator *> mediators;
    std::vector<Mediator *> leaving; // about to be deleted
    bool destructing = false;
};
} // namespace values
