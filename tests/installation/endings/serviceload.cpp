#include "tests/installation/endings/serviceload.h"

#include "tests/support/waiting.h"

#include <QtTest/QTest>

#include <omniORB4/CORBA.h>

#include <algorithm>

ServiceLoad::ServiceLoad(const std::vector<Kind> &kinds)
{
    for (const Kind &kind : kinds)
        callers.push_back(std::make_unique<Caller>(kind));
    for (const auto &caller : callers)
        caller->thread = std::thread([this, &caller = *caller] { run(caller); });
}

ServiceLoad::~ServiceLoad()
{
    finish();
}

void ServiceLoad::run(Caller &caller)
{
    while (!isOver) {
        try {
            caller.kind.call();
            ++caller.answers;
        } catch (const CORBA::SystemException &) { // of a connection to the process before, or the end
            if (isEnding)
                return;
        } catch (const CORBA::UserException &) { // a refusal is an answer
            ++caller.answers;
        }
    }
}

int ServiceLoad::answers() const
{
    int sum = 0;
    for (const auto &caller : callers)
        sum += caller->answers;
    return sum;
}

bool ServiceLoad::isUnderWay(int moreAnswers) const
{
    const bool all = QTest::qWaitFor(
        [this] { return std::ranges::all_of(callers, [](const auto &caller) { return caller->answers > 0; }); },
        patienceMs);
    const int enough = answers() + moreAnswers;
    return all && QTest::qWaitFor([this, enough] { return answers() >= enough; }, patienceMs);
}

std::string ServiceLoad::unanswered() const
{
    std::string names;
    for (const auto &caller : callers)
        if (caller->answers == 0)
            names += caller->kind.name + ' ';
    return names;
}

void ServiceLoad::finish()
{
    isOver = true;
    for (const auto &caller : callers)
        if (caller->thread.joinable())
            caller->thread.join();
}
