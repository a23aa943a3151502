#include "orbconnection/serviceregistration.h"

#include "tests/orbconnection/livecentralservice.h"

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
    service().suspend();
    const auto begin = std::chrono::steady_clock::now();
    registration.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);
    service().resume();
}
} // namespace
