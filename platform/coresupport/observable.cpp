#include "coresupport/observable.h"

#include "coresupport/firstexception.h"

#include <algorithm>
#include <cstddef>

/// One running notification, on the stack of its call. Edits of the list keep its positions right, so that the list
/// need not be copied; rounds nest when an observer causes a further notification.
class Observable::Round
{
public:
    explicit Round(Observable &observable)
        : subject(&observable), outer(observable.innermostRound), end(observable.observers.size())
    {
        observable.innermostRound = this;
    }
    Round(const Round &) = delete;
    [[gnu::noinline]] ~Round() // inlined, g++ 12 takes the case of a destroyed subject for a dangling pointer
    {
        if (!subject)
            return;
        subject->innermostRound = outer;
        if (nextFirst && outer)
            outer->nextFirst = nextFirst;
        else if (nextFirst)
            subject->MakeFirstObserver(nextFirst);
    }

    void erased(std::size_t position, const IObserver *observer)
    {
        next -= position < next;
        end -= position < end;
        if (nextFirst == observer)
            nextFirst = nullptr;
    }
    void cleared()
    {
        next = end = 0;
        nextFirst = nullptr;
    }

    Observable *subject; // null once the observable has been destroyed
    Round *const outer;
    IObserver *nextFirst = nullptr; // becomes the first observer when the outermost round has ended
    std::size_t next = 0;
    std::size_t end; // observers added meanwhile stand behind it
};

Observable::~Observable()
{
    for (Round *round = innermostRound; round; round = round->outer)
        round->subject = nullptr;
}

void Observable::AddObserver(IObserver *observer)
{
    if (observer && std::find(observers.begin(), observers.end(), observer) == observers.end())
        observers.push_back(observer);
}

void Observable::DeleteObserver(IObserver *observer)
{
    const auto found = std::find(observers.begin(), observers.end(), observer);
    if (found == observers.end())
        return;
    const auto position = static_cast<std::size_t>(found - observers.begin());
    observers.erase(found);
    for (Round *round = innermostRound; round; round = round->outer)
        round->erased(position, observer);
}

void Observable::DeleteObservers()
{
    observers.clear();
    for (Round *round = innermostRound; round; round = round->outer)
        round->cleared();
}

void Observable::MakeFirstObserver(IObserver *observer)
{
    if (!observer)
        return;
    AddObserver(observer);
    // Moving now would take an observer whose turn is still to come out of the running round.
    if (innermostRound) {
        innermostRound->nextFirst = observer;
        return;
    }
    const auto found = std::find(observers.begin(), observers.end(), observer);
    std::rotate(observers.begin(), found, found + 1);
}

void Observable::NotifyObservers(TChangeCode code, IObserver *originator)
{
    if (observers.empty())
        return;
    FirstException trouble;
    Round round(*this);
    while (round.subject && round.next < round.end) {
        IObserver *const observer = observers[round.next++];
        if (observer != originator)
            trouble.attempt([&] { observer->Update(this, code); });
    }
    trouble.rethrow();
}
