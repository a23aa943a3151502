#pragma once

#include "coresupport/iobserver.h"

#include <vector>

/// Keeps a list of borrowed observers and tells them of changes, in list order.
///
/// The list may be edited, and observers or the observable itself may be destroyed, while a notification runs.
/// Thread: the one that owns it; never blocks.
class CORESUPPORT_EXPORT Observable
{
public:
    Observable() = default;
    Observable(const Observable &) = delete;
    Observable &operator=(const Observable &) = delete;
    virtual ~Observable(); // the only virtual: derived classes publish the order of theirs

    /// Adds at the end. Null and an observer that is in the list already change nothing.
    /// Added during a notification, it hears of the next one only.
    void AddObserver(IObserver *observer);
    /// From here on @p observer is not called, also not by a notification that is running.
    void DeleteObserver(IObserver *observer);
    void DeleteObservers();
    /// Moves @p observer to the front, or adds it there. During a notification this takes effect when that ends.
    void MakeFirstObserver(IObserver *observer);

    bool hasObservers() const { return !observers.empty(); }

    /// Calls all observers but @p originator. An exception of an observer reaches the caller after the others
    /// have been told.
    void NotifyObservers(TChangeCode code, IObserver *originator);

private:
    class Round;

    std::vector<IObserver *> observers;
    Round *innermostRound = nullptr;
};
