#pragma once

#include "coresupport/coresupport_export.h"

class Observable;

/// What an observer is told. Observables may send further numbers; an observer ignores those that it does not know.
enum TChangeCode : int {
    ChangeCodeState = 2,
    ChangeCodeValue = 3,
    ChangeCodeChildAdded = 15,
    ChangeCodeNodeItems = 16,
    ChangeCodeDeleted = 18, ///< the observed item is being removed, or the connection that feeds it is lost
};

/// Is told of changes by the observables that it was added to.
///
/// An observer that dies removes itself from its observables first: they borrow it.
class CORESUPPORT_EXPORT IObserver
{
public:
    virtual ~IObserver() = default;
    /// @p subject may be dying (ChangeCodeDeleted). May add, remove and delete observers, also @p subject itself.
    virtual void Update(Observable *subject, TChangeCode code) = 0;
};
