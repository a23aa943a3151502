#include "coresupport/observable.h"

namespace
{
class Counter : public IObserver
{
public:
    void Update(Observable *, TChangeCode code) override { changes += code == ChangeCodeValue; }
    int changes = 0;
};
} // namespace

int main()
{
    Observable subject;
    Counter counter;
    subject.AddObserver(&counter);
    subject.NotifyObservers(ChangeCodeValue, nullptr);
    return counter.changes == 1 ? 0 : 1;
}
