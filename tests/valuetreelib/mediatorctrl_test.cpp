#include "valuetreelib/mediatorctrl.h"

#include "tests/valuetreelib/treetestsupport.h"
#include "valuetreelib/mediator.h"

#include <gtest/gtest.h>

namespace
{
using namespace values;
using testing::ElementsAre;
using testing::IsEmpty;

class Controller;

/// Watches one node for its controller, and ends with it.
class Watcher : public Mediator
{
public:
    Watcher(Controller *controller, Observable *node);
    ~Watcher() override;
    void Update(Observable *, TChangeCode code) override;

private:
    Controller &home;
};

class Controller : public MediatorCtrl
{
public:
    explicit Controller(Log &log) : log(log) {}
    ~Controller() override { startDestruction(); }
    Mediator *CreateMediator(Observable *observable) override
    {
        return dynamic_cast<Node *>(observable) ? new Watcher(this, observable) : nullptr;
    }
    Log &log;
    std::function<void()> onEnd;
};

Watcher::Watcher(Controller *controller, Observable *node) : Mediator(controller, node), home(*controller)
{
}

Watcher::~Watcher()
{
    home.log.push_back(home.IsDestructing() ? "torn down" : "gone");
    if (home.onEnd)
        std::exchange(home.onEnd, nullptr)();
}

void Watcher::Update(Observable *, TChangeCode code)
{
    home.log.push_back(std::to_string(code));
    if (code != ChangeCodeDeleted)
        return;
    forgetObserved();
    delete this;
}

class Mediation : public TreeTest
{
protected:
    Node *node = tree.addNode(QStringLiteral("/Device/D1"));
    Node *second = tree.addNode(QStringLiteral("/Device/D2"));
    std::unique_ptr<Controller> controller = std::make_unique<Controller>(log);
};

TEST_F(Mediation, KeepsTheMediatorOfAnObservable)
{
    EXPECT_EQ(controller->GetMediator(node), nullptr);
    Mediator *const mediator = controller->CreateMediator(node);
    EXPECT_EQ(controller->GetMediator(node), mediator);
    EXPECT_EQ(mediator->controller(), controller.get());
    EXPECT_EQ(mediator->observed(), node);
    EXPECT_EQ(controller->GetMediator(second), nullptr);
    EXPECT_EQ(controller->GetMediator(nullptr), nullptr);
}

TEST_F(Mediation, IsUpToTheFactory)
{
    TextValue value;
    EXPECT_EQ(controller->CreateMediator(&value), nullptr);
    EXPECT_EQ(controller->GetMediator(&value), nullptr);
}

TEST_F(Mediation, ObservesFromTheStart)
{
    controller->CreateMediator(node);
    add<TextValue>(QStringLiteral("/Device/D1"), QStringLiteral("v"));
    EXPECT_THAT(taken(), ElementsAre("15", "16"));
}

TEST_F(Mediation, EndsWithItsNode)
{
    controller->CreateMediator(node);
    tree.removeNode(QStringLiteral("/Device/D1"));
    EXPECT_THAT(taken(), ElementsAre("18", "gone"));
    EXPECT_EQ(controller->GetMediator(node), nullptr);
}

TEST_F(Mediation, EndsWithItsControllerWhichSaysSo)
{
    controller->CreateMediator(node);
    controller->CreateMediator(second);
    controller.reset();
    EXPECT_THAT(taken(), ElementsAre("torn down", "torn down"));
    add<TextValue>(QStringLiteral("/Device/D1"), QStringLiteral("v"));
    EXPECT_THAT(taken(), IsEmpty()) << "nobody observes any more";
}

TEST_F(Mediation, CanBeClearedAndBegunAnew)
{
    controller->CreateMediator(node);
    controller->CreateMediator(second);
    controller->Clear();
    EXPECT_THAT(taken(), ElementsAre("gone", "gone"));
    EXPECT_EQ(controller->GetMediator(node), nullptr);
    EXPECT_FALSE(controller->IsDestructing());
    EXPECT_NE(controller->CreateMediator(node), nullptr);
}

TEST_F(Mediation, SurvivesAMediatorThatMakesAndDeletesOthersAsItIsCleared)
{
    Mediator *const first = controller->CreateMediator(node);
    controller->CreateMediator(second); // the last one goes first
    Mediator *made = nullptr;
    controller->onEnd = [&] {
        delete first;
        made = controller->CreateMediator(node);
        controller->Clear();
        made = controller->CreateMediator(node);
    };
    controller->Clear();
    EXPECT_THAT(taken(), ElementsAre("gone", "gone", "gone"));
    EXPECT_EQ(controller->GetMediator(second), nullptr);
    EXPECT_EQ(controller->GetMediator(node), made);
}
} // namespace
