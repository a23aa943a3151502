#include "valuetreelib/ideletesubject.h"

namespace values
{
IDeleteSubject::IDeleteSubject() = default;
IDeleteSubject::~IDeleteSubject() = default;

void IDeleteSubject::addDeleteObserver(IObserver *holder)
{
    if (!holders)
        holders = std::make_unique<Observable>();
    holders->AddObserver(holder);
}

void IDeleteSubject::removeDeleteObserver(IObserver *holder)
{
    if (holders)
        holders->DeleteObserver(holder);
}

void IDeleteSubject::tellHolders(TChangeCode code)
{
    if (holders)
        holders->NotifyObservers(code, nullptr);
}
} // namespace values
