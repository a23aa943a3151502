#include "installation/cco/liveness.h"
#include "tests/installation/cco/loopbackports.h"
#include "tests/installation/cco/recordingcallback.h"
#include "tests/installation/cco/testorb.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

using namespace installation;
using namespace std::chrono_literals;

namespace
{

TEST(AnAddress, LivesWhenItAcceptsConnections)
{
    const MutePort port;
    EXPECT_EQ(askAddress({"127.0.0.1", port.port()}), Answer::Lives);
}

TEST(AnAddress, IsGoneWhenItRefuses)
{
    const RefusingPort port;
    EXPECT_EQ(askAddress({"127.0.0.1", port.port()}), Answer::Gone);
}

TEST(AnAddress, IsSilentWhenItAcceptsNothing)
{
    const DeafPort port;
    EXPECT_EQ(askAddress({"127.0.0.1", port.port()}), Answer::Silent);
}

TEST(AnAddress, IsSilentWithoutSuchAHost)
{
    EXPECT_EQ(askAddress({"no such host", 8003}), Answer::Silent);
}

TEST(AnAddress, IsNotAskedWithoutADescriptor)
{
    const MutePort port;
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit none{0, limit.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    const Answer answer = askAddress({"127.0.0.1", port.port()});
    setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(answer, Answer::NotAsked);
}

struct ValuesCase {
    const char *label;
    std::vector<std::string> values;
    bool isAddress;
};

class ValuesList : public testing::TestWithParam<ValuesCase>
{
};

TEST_P(ValuesList, IsAnAddressOnlyAsHostAndPort)
{
    EXPECT_EQ(addressIn(GetParam().values).has_value(), GetParam().isAddress);
}

INSTANTIATE_TEST_SUITE_P(Forms, ValuesList,
                         testing::Values(ValuesCase{"HostAndPort", {"10.0.0.7", "8004"}, true},
                                         ValuesCase{"HighestPort", {"host", "65535"}, true},
                                         ValuesCase{"Nothing", {}, false}, ValuesCase{"HostAlone", {"10.0.0.7"}, false},
                                         ValuesCase{"ThreeValues", {"10.0.0.7", "8004", "x"}, false},
                                         ValuesCase{"NoHost", {"", "8004"}, false},
                                         ValuesCase{"PortZero", {"host", "0"}, false},
                                         ValuesCase{"PortTooHigh", {"host", "65536"}, false},
                                         ValuesCase{"PortNegative", {"host", "-1"}, false},
                                         ValuesCase{"PortWithMore", {"host", "80x"}, false},
                                         ValuesCase{"PortEmpty", {"host", ""}, false}),
                         [](const auto &info) { return std::string(info.param.label); });

TEST(AnObject, LivesUntilItsServantGoes)
{
    const CallbackOwner callback(RecordingCallback::make());
    const CCO::Callback_var reference = callback->reference();
    EXPECT_EQ(askObject(reference, 5s), Answer::Lives);
    callback->retire();
    EXPECT_EQ(askObject(reference, 5s), Answer::Gone);
}

CORBA::Object_ptr objectAt(std::uint16_t port)
{
    const std::string reference = "corbaloc::1.2@127.0.0.1:" + std::to_string(port) + "/Object";
    return TestOrb::instance().orb()->string_to_object(reference.c_str());
}

TEST(AnObject, IsGoneWhenItsPortRefuses)
{
    const RefusingPort port;
    EXPECT_EQ(askObject(CORBA::Object_var(objectAt(port.port())), 5s), Answer::Gone);
}

TEST(AnObject, IsSilentWhenItsPortDoesNotAnswer)
{
    const MutePort mute;
    EXPECT_EQ(askObject(CORBA::Object_var(objectAt(mute.port())), 100ms), Answer::Silent);
    const DeafPort deaf;
    EXPECT_EQ(askObject(CORBA::Object_var(objectAt(deaf.port())), 100ms), Answer::Silent);
}

TEST(ASilence, EndsWithTheThirdMissInARow)
{
    Silence silence;
    EXPECT_FALSE(silence.endsWith(Answer::Silent));
    EXPECT_FALSE(silence.endsWith(Answer::Silent));
    EXPECT_FALSE(silence.endsWith(Answer::Lives));
    EXPECT_FALSE(silence.endsWith(Answer::Silent));
    EXPECT_FALSE(silence.endsWith(Answer::NotAsked));
    EXPECT_FALSE(silence.endsWith(Answer::Silent));
    EXPECT_TRUE(silence.endsWith(Answer::Silent));
}

TEST(ASilence, EndsAtOnceWithWhatIsGone)
{
    EXPECT_TRUE(Silence().endsWith(Answer::Gone));
}

} // namespace
