#include "valuetreelib/mediator.h"

#include "valuetreelib/mediatorctrl.h"

#include <utility>

namespace values
{
Mediator::Mediator(MediatorCtrl *controller, Observable *observable) : owner(controller), subject(observable)
{
    if (subject)
        subject->AddObserver(this);
    if (owner)
        owner->NotifyCreated(this);
}

Mediator::~Mediator()
{
    forgetObserved();
    if (owner)
        owner->NotifyDeleted(this);
}

void Mediator::forgetObserved()
{
    if (Observable *const forgotten = std::exchange(subject, nullptr))
        forgotten->DeleteObserver(this);
}
} // namespace values
