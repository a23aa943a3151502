#include "installation/cco/liveness.h"
#include "tests/installation/cco/loopbackports.h"
#include "tests/installation/cco/recordingcallback.h"

#include <gtest/gtest.h>

using namespace installation;
using namespace std::chrono_literals;

namespace
{

TEST(AnAddress, AnswersWhenItAcceptsConnections)
{
    const MutePort port;
    EXPECT_TRUE(addressAnswers({"127.0.0.1", port.port()}));
}

TEST(AnAddress, DoesNotAnswerWhenItRefuses)
{
    const RefusingPort port;
    EXPECT_FALSE(addressAnswers({"127.0.0.1", port.port()}));
}

TEST(AnAddress, DoesNotAnswerWhenItStaysSilent)
{
    const DeafPort port;
    EXPECT_FALSE(addressAnswers({"127.0.0.1", port.port()}));
}

TEST(AnAddress, DoesNotAnswerWithoutSuchAHost)
{
    EXPECT_FALSE(addressAnswers({"no such host", 8003}));
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

TEST(AnObject, AnswersUntilItsServantGoes)
{
    const CallbackOwner callback(RecordingCallback::make());
    const CCO::Callback_var reference = callback->reference();
    EXPECT_TRUE(objectAnswers(reference, 5s));
    callback->retire();
    EXPECT_FALSE(objectAnswers(reference, 5s));
}

} // namespace
