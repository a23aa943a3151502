#include "valuetreelib/mediatorctrl.h"

#include "valuetreelib/mediator.h"

#include <algorithm>

namespace values
{
MediatorCtrl::~MediatorCtrl()
{
    startDestruction();
}

void MediatorCtrl::startDestruction()
{
    destructing = true;
    Clear();
}

void MediatorCtrl::NotifyCreated(Mediator *mediator)
{
    mediators.push_back(mediator);
}

void MediatorCtrl::NotifyDeleted(Mediator *mediator)
{
    std::erase(mediators, mediator);
    std::erase(leaving, mediator);
}

Mediator *MediatorCtrl::GetMediator(const Observable *observable) const
{
    const auto found = std::find_if(mediators.begin(), mediators.end(),
                                    [observable](const Mediator *mediator) { return mediator->observed() == observable; });
    return observable && found != mediators.end() ? *found : nullptr;
}

void MediatorCtrl::Clear()
{
    // What a mediator's destructor calls may delete others, and make new ones, which stay.
    leaving.insert(leaving.end(), mediators.begin(), mediators.end());
    mediators.clear();
    while (!leaving.empty()) {
        Mediator *const mediator = leaving.back();
        leaving.pop_back();
        delete mediator;
    }
}
} // namespace values
