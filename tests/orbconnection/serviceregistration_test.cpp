#include "orbconnection/serviceregistration.h"

#include "coresupport/trace.h"
#include "tests/orbconnection/livecentralservice.h"
#include "tests/support/outage.h"

#include <future>
#include <mutex>
#include <optional>

using namespace CorbaCommon;
using namespace std::chrono_literals;

namespace
{
class Registration : public LiveCentralService
{
protected:
    std::vector<std::string> valuesOf(const char *name) const
    {
        const CCO::IF_CCO_c_var cco = direct();
        const CCO::seqString_var sequence = cco->ResolveValues(name, CCO::rtInstallation);
        std::vector<std::string> values;
        for (CORBA::ULong i = 0; i < sequence->length(); ++i)
            values.push_back(sequence.in()[i].in());
        return values;
    }
    bool isThere(const char *name) const
    {
        const CCO::IF_CCO_c_var cco = direct();
        const CORBA::Object_var object = cco->Resolve(name, CCO::rtInstallation);
        return !CORBA::is_nil(object);
    }

    const ServiceRegistration::Timing timing{.repetition = 50ms, .callLimit = 1000ms};
};

TEST_F(Registration, OffersValuesAndObjectsAtOnce)
{
    ServiceRegistration registration; // whose repetition nobody waits for here
    const CCO::IF_CCO_c_var object = direct();
    registration.registerValues(QStringLiteral("A/Values"), {QStringLiteral("one"), QStringLiteral("two")});
    registration.registerObject(QStringLiteral("A/Object"), object);
    EXPECT_TRUE(comesTrue([&] { return isThere("A/Object"); }));
    EXPECT_EQ(valuesOf("A/Values"), (std::vector<std::string>{"one", "two"}));
}

TEST_F(Registration, OffersThePublishedAddressAsEndpoint)
{
    // Entries of this form are dropped unless somebody answers there, as the service itself does.
    ServiceRegistration registration(timing);
    registration.registerEndpoint(QStringLiteral("A/Endpoint"), 8003);
    EXPECT_TRUE(comesTrue([&] {
        return valuesOf("A/Endpoint") == std::vector<std::string>{address().toStdString(), "8003"};
    }));
}

TEST_F(Registration, FillsANewCentralService)
{
    ServiceRegistration registration(timing);
    registration.registerValues(QStringLiteral("A"), {QStringLiteral("one")});
    ASSERT_TRUE(comesTrue([&] { return !valuesOf("A").empty(); }));
    killService();
    startService();
    EXPECT_TRUE(comesTrue([&] { return !valuesOf("A").empty(); }));
}

TEST_F(Registration, TakesItsNamesBack)
{
    {
        ServiceRegistration registration(timing);
        registration.registerValues(QStringLiteral("A"), {QStringLiteral("one")});
        registration.registerValues(QStringLiteral("B"), {QStringLiteral("one")});
        ASSERT_TRUE(comesTrue([&] { return !valuesOf("B").empty(); }));
        registration.unregister(QStringLiteral("A"));
        EXPECT_TRUE(comesTrue([&] { return valuesOf("A").empty(); }));
        EXPECT_FALSE(valuesOf("B").empty());
    }
    EXPECT_TRUE(valuesOf("B").empty());
}

TEST_F(Registration, CanBeWaitedFor)
{
    ServiceRegistration registration;
    const CCO::IF_CCO_c_var object = direct();
    registration.registerObject(QStringLiteral("A/Object"), object);
    EXPECT_TRUE(registration.waitUntilTried());
    EXPECT_TRUE(isThere("A/Object"));
}

TEST_F(Registration, IsNotWaitedForWithoutAService)
{
    killService();
    ServiceRegistration registration(timing);
    registration.registerValues(QStringLiteral("A"), {QStringLiteral("one")});
    EXPECT_FALSE(registration.waitUntilTried());
    startService();
    EXPECT_TRUE(comesTrue([&] { return registration.waitUntilTried(); }));
    EXPECT_FALSE(valuesOf("A").empty());
}

TEST_F(Registration, EndsSoonAlsoWithoutAnAnswer)
{
    auto registration = std::make_unique<ServiceRegistration>(timing);
    registration->registerValues(QStringLiteral("A"), {QStringLiteral("one")});
    ASSERT_TRUE(comesTrue([&] { return !valuesOf("A").empty(); }));
    const Outage outage(service());
    registration.reset();
    EXPECT_TRUE(outage.lasts());
}
/// Two services that want the name "A/Endpoint", each with a name of its own behind it; both live.
class RivalRegistrations : public Registration
{
protected:
    RivalRegistrations() : formerCapture(setTraceCapture([this](const TraceLine &line) { note(line.text); })) {}
    ~RivalRegistrations() override { setTraceCapture(formerCapture); }

    static void offer(ServiceRegistration &registration, unsigned short port, const char *otherName)
    {
        registration.registerEndpoint(QStringLiteral("A/Endpoint"), port);
        registration.registerValues(QLatin1String(otherName), {QStringLiteral("one")});
    }
    bool isHeldAt(const char *port) const
    {
        return valuesOf("A/Endpoint") == std::vector<std::string>{address().toStdString(), port};
    }
    bool hasSaid(const QString &words)
    {
        const std::lock_guard lock(mutex);
        return said.contains(words);
    }
    void forgetWhatWasSaid()
    {
        const std::lock_guard lock(mutex);
        said.clear();
    }

    const ServiceProcess rival{QStringLiteral(TROUBLE_PROGRAM), {address(), QStringLiteral("8100")}};
    std::optional<ServiceRegistration> first{std::in_place, ServiceRegistration::Timing{.repetition = 1h}};
    std::optional<ServiceRegistration> second;

private:
    void note(const QString &text)
    {
        const std::lock_guard lock(mutex);
        said += text;
    }

    std::mutex mutex; // guards the next
    QString said;
    const TraceCapture formerCapture;
};

TEST_F(RivalRegistrations, GiveTheSecondNoneOfItsNamesWhileTheFirstLives)
{
    offer(*first, 8100, "B/First");
    ASSERT_TRUE(first->waitUntilTried());
    second.emplace(timing);
    second->registerValues(QStringLiteral("A/Before"), {QStringLiteral("one")}); // comes first, and is to be had
    ASSERT_TRUE(second->waitUntilTried());
    offer(*second, 8003, "B/Second");
    EXPECT_FALSE(second->waitUntilTried());
    EXPECT_TRUE(isHeldAt("8100"));
    EXPECT_TRUE(valuesOf("A/Before").empty());
    EXPECT_TRUE(valuesOf("B/Second").empty());
    EXPECT_TRUE(hasSaid(QStringLiteral("A/Endpoint is held by another, at %1:8100").arg(address())));
}

TEST_F(RivalRegistrations, GiveTheSecondAllItsNamesWhenTheFirstEnds)
{
    offer(*first, 8100, "B/First");
    ASSERT_TRUE(first->waitUntilTried());
    second.emplace(timing);
    offer(*second, 8003, "B/Second");
    ASSERT_FALSE(second->waitUntilTried());
    first.reset();
    EXPECT_TRUE(comesTrue([&] { return isHeldAt("8003") && !valuesOf("B/Second").empty(); }));
    EXPECT_TRUE(comesTrue([&] { return second->waitUntilTried(); }));
}

TEST_F(RivalRegistrations, LeaveTheFirstItsNamesWhenTheSecondEnds)
{
    offer(*first, 8100, "B/First");
    ASSERT_TRUE(first->waitUntilTried());
    second.emplace(timing);
    offer(*second, 8003, "B/Second");
    ASSERT_FALSE(second->waitUntilTried());
    second.reset();
    EXPECT_TRUE(isHeldAt("8100"));
}

TEST_F(RivalRegistrations, LetTheFirstComeFirstToANewCentralService)
{
    const ServiceRegistration::Timing slow{.repetition = 500ms, .callLimit = 1000ms};
    second.emplace(slow); // so that it is the one that would come first
    first.emplace(slow);
    offer(*first, 8100, "B/First");
    ASSERT_TRUE(first->waitUntilTried());
    offer(*second, 8003, "B/Second");
    ASSERT_FALSE(second->waitUntilTried());
    killService();
    ASSERT_TRUE(comesTrue([&] { return hasSaid(QStringLiteral("A/Endpoint cannot be registered")); }));
    forgetWhatWasSaid();
    startService();
    EXPECT_TRUE(comesTrue([&] { return hasSaid(QStringLiteral("A/Endpoint is held by another")); }));
    EXPECT_TRUE(isHeldAt("8100"));
}

TEST_F(RivalRegistrations, AreToldHowItStands)
{
    using State = ServiceRegistration::State;
    std::promise<QString> refused; // first, since the listener uses them until its registration has ended
    std::promise<State> next;
    offer(*first, 8100, "B/First");
    ASSERT_TRUE(first->waitUntilTried());
    {
        int changes = 0;
        ServiceRegistration heard(timing, [&](State now, const QString &why) {
            if (++changes == 1)
                refused.set_value(now == State::Refused ? why : QString());
            if (changes == 2)
                next.set_value(now);
        });
        heard.registerEndpoint(QStringLiteral("A/Endpoint"), 8003);
        EXPECT_EQ(refused.get_future().get(), QStringLiteral("A/Endpoint is held by another, at %1:8100").arg(address()));
        first.reset();
        EXPECT_EQ(next.get_future().get(), State::Registered);
    }
}

TEST_F(Registration, CanLetAllItsNamesGoAndHaveThemAgain)
{
    ServiceRegistration registration(timing);
    for (int round = 0; round < 2; ++round) {
        registration.registerValues(QStringLiteral("A"), {QStringLiteral("one")});
        registration.registerValues(QStringLiteral("B"), {QStringLiteral("one")});
        ASSERT_TRUE(registration.waitUntilTried());
        EXPECT_FALSE(valuesOf("A").empty() || valuesOf("B").empty());
        registration.unregisterAll();
        EXPECT_TRUE(comesTrue([&] { return valuesOf("A").empty() && valuesOf("B").empty(); }));
    }
}

TEST_F(RivalRegistrations, LeaveTheFirstItsObjectWhenTheSecondIsRefused)
{
    const QString name = QStringLiteral("A/Object");
    const CCO::IF_CCO_c_var object = direct();
    first->registerObject(name, object);
    ASSERT_TRUE(first->waitUntilTried());
    const CORBA::Object_var other =
        OrbHandler::Instance().orb()->string_to_object(rival.readyWords().value(2).toLatin1().constData());
    second.emplace(timing);
    second->registerObject(name, other);
    EXPECT_FALSE(second->waitUntilTried());
    second.reset();
    EXPECT_TRUE(isThere("A/Object"));
}

TEST_F(Registration, ReplacesWhatItsOwnNameHad)
{
    ServiceRegistration registration(timing);
    const CCO::IF_CCO_c_var object = direct();
    registration.registerObject(QStringLiteral("A"), object);
    ASSERT_TRUE(registration.waitUntilTried());
    registration.registerEndpoint(QStringLiteral("A"), 8003);
    EXPECT_TRUE(registration.waitUntilTried());
    EXPECT_EQ(valuesOf("A"), (std::vector<std::string>{address().toStdString(), "8003"}));
}
} // namespace
