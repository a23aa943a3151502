#pragma once

#include "coresupport/observable.h"
#include "valuetreelib/valuetreelib_export.h"

#include <memory>

namespace values
{
/// The delete side of a tree item: those who hold the item register here to learn that it goes.
///
/// They are told ChangeCodeState once the item is unhooked and its state is ValueStateDeleted, before any ordinary
/// observer, and ChangeCodeDeleted when it is destroyed. The subject of both is the delete side, not the item.
class VALUETREELIB_EXPORT IDeleteSubject
{
public:
    IDeleteSubject(const IDeleteSubject &) = delete;
    IDeleteSubject &operator=(const IDeleteSubject &) = delete;

    /// May be called while the holders are being told.
    void addDeleteObserver(IObserver *holder);
    void removeDeleteObserver(IObserver *holder);

protected:
    // Not an abstract class: a table pointer beside the list would cost every value 8 bytes more.
    IDeleteSubject();
    ~IDeleteSubject();
    void tellHolders(TChangeCode code);

private:
    std::unique_ptr<Observable> holders; // made for the first holder
};
} // namespace values
