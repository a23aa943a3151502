#include "coresupport/observable.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

/// Writes its name to a common log, then does what the test gave it to do.
class NamedObserver : public IObserver
{
public:
    NamedObserver(std::string name, std::vector<std::string> &log) : name(std::move(name)), log(log) {}
    void Update(Observable *, TChangeCode code) override
    {
        log.push_back(name);
        lastCode = code;
        if (react)
            std::exchange(react, nullptr)(); // once: the reaction may notify again, or delete this
    }
    std::string name;
    std::vector<std::string> &log;
    std::function<void()> react;
    TChangeCode lastCode{};
};

class Notification : public testing::Test
{
protected:
    void addAll()
    {
        for (IObserver *observer : {&a, &b, &c})
            subject->AddObserver(observer);
    }
    std::vector<std::string> calls() { return std::exchange(log, {}); }
    void notify() { subject->NotifyObservers(ChangeCodeValue, nullptr); }

    std::vector<std::string> log;
    NamedObserver a{"a", log}, b{"b", log}, c{"c", log}, added{"added", log};
    std::unique_ptr<Observable> subject = std::make_unique<Observable>();
};

TEST_F(Notification, ReachesAllInOrderWithItsCode)
{
    addAll();
    subject->NotifyObservers(ChangeCodeDeleted, nullptr);
    EXPECT_THAT(calls(), ElementsAre("a", "b", "c"));
    EXPECT_EQ(c.lastCode, ChangeCodeDeleted);
}

TEST_F(Notification, SkipsTheOriginator)
{
    addAll();
    subject->NotifyObservers(ChangeCodeValue, &b);
    EXPECT_THAT(calls(), ElementsAre("a", "c"));
}

TEST_F(Notification, ReachesAnObserverOnceThatWasAddedTwice)
{
    subject->AddObserver(&a);
    subject->AddObserver(&a);
    subject->AddObserver(nullptr);
    notify();
    EXPECT_THAT(calls(), ElementsAre("a"));
    subject->DeleteObserver(&a);
    notify();
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(Notification, ReachesNobodyAfterDeleteObservers)
{
    addAll();
    subject->DeleteObservers();
    notify();
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(Notification, StartsWithTheObserverMadeFirst)
{
    addAll();
    subject->MakeFirstObserver(&c);
    subject->MakeFirstObserver(&added);
    subject->MakeFirstObserver(nullptr);
    notify();
    EXPECT_THAT(calls(), ElementsAre("added", "c", "a", "b"));
}

TEST_F(Notification, LeavesOutWhoWasRemovedMeanwhile)
{
    addAll();
    a.react = [this] { subject->DeleteObserver(&b); };
    notify();
    EXPECT_THAT(calls(), ElementsAre("a", "c"));
}

TEST_F(Notification, CallsNobodyTwiceWhenAnEarlierObserverGoes)
{
    addAll();
    b.react = [this] {
        subject->DeleteObserver(&a);
        subject->DeleteObserver(&b);
    };
    notify();
    EXPECT_THAT(calls(), ElementsAre("a", "b", "c"));
    notify();
    EXPECT_THAT(calls(), ElementsAre("c"));
}

TEST_F(Notification, ReachesWhoWasAddedMeanwhileFromTheNextOneOn)
{
    addAll();
    a.react = [this] {
        subject->DeleteObserver(&c);
        subject->AddObserver(&added);
    };
    notify();
    EXPECT_THAT(calls(), ElementsAre("a", "b"));
    notify();
    EXPECT_THAT(calls(), ElementsAre("a", "b", "added"));
}

TEST_F(Notification, StillReachesWhoIsMadeFirstMeanwhile)
{
    addAll();
    a.react = [this] { subject->MakeFirstObserver(&c); };
    notify();
    EXPECT_THAT(calls(), ElementsAre("a", "b", "c"));
    notify();
    EXPECT_THAT(calls(), ElementsAre("c", "a", "b"));
}

TEST_F(Notification, ForgetsTheNewFirstWhenThatIsRemovedMeanwhile)
{
    addAll();
    a.react = [this] { subject->MakeFirstObserver(&added); };
    b.react = [this] { subject->DeleteObserver(&added); };
    notify();
    notify();
    EXPECT_THAT(calls(), ElementsAre("a", "b", "c", "a", "b", "c"));
}

TEST_F(Notification, SurvivesAnObserverThatDeletesItself)
{
    auto *mortal = new NamedObserver("mortal", log);
    subject->AddObserver(mortal);
    addAll();
    mortal->react = [this, mortal] {
        subject->DeleteObserver(mortal);
        delete mortal;
    };
    notify();
    EXPECT_THAT(calls(), ElementsAre("mortal", "a", "b", "c"));
}

TEST_F(Notification, EndsWhenTheObservableIsDestroyed)
{
    addAll();
    b.react = [this] { subject.reset(); };
    notify();
    EXPECT_THAT(calls(), ElementsAre("a", "b"));
}

TEST_F(Notification, EndsInAllItsRoundsWhenTheObservableIsDestroyedInAnInnerOne)
{
    addAll();
    a.react = [this] {
        b.react = [this] { subject.reset(); };
        notify();
    };
    notify();
    EXPECT_THAT(calls(), ElementsAre("a", "a", "b"));
}

TEST_F(Notification, KeepsTheOuterRoundRightWhenAnInnerOneEditsTheList)
{
    addAll();
    b.react = [this] {
        a.react = [this] {
            subject->DeleteObserver(&a);
            subject->MakeFirstObserver(&c);
        };
        notify();
    };
    notify();
    EXPECT_THAT(calls(), ElementsAre("a", "b", "a", "b", "c", "c"));
    notify();
    EXPECT_THAT(calls(), ElementsAre("c", "b"));
}

TEST_F(Notification, EndsWhenEverybodyIsRemoved)
{
    addAll();
    b.react = [this] { subject->DeleteObservers(); };
    notify();
    EXPECT_THAT(calls(), ElementsAre("a", "b"));
}

TEST_F(Notification, ReachesAllWhenSomeThrowAndThrowsTheFirst)
{
    addAll();
    a.react = [] { throw std::string("first"); };
    b.react = [] { throw std::string("second"); };
    try {
        notify();
        FAIL();
    } catch (const std::string &trouble) {
        EXPECT_EQ(trouble, "first");
    }
    EXPECT_THAT(calls(), ElementsAre("a", "b", "c"));
}

TEST_F(Notification, EndsQuietlyWhenWhoThrowsHasDestroyedTheObservable)
{
    addAll();
    b.react = [this] {
        subject.reset();
        throw std::string("trouble");
    };
    EXPECT_THROW(notify(), std::string);
    EXPECT_THAT(calls(), ElementsAre("a", "b"));
}

TEST_F(Notification, WorksAgainAfterAnObserverThrew)
{
    addAll();
    a.react = [] { throw std::string("trouble"); };
    EXPECT_THROW(notify(), std::string);
    log.clear();
    subject->MakeFirstObserver(&c); // at once: the broken round has ended
    notify();
    EXPECT_THAT(calls(), ElementsAre("c", "a", "b"));
}
} // namespace
