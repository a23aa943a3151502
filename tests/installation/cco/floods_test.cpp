#include "tests/installation/cco/ccoprocess.h"
#include "tests/installation/cco/loopbackports.h"
#include "tests/installation/cco/servicefixture.h"

#include <random>

using namespace std::chrono_literals;

namespace
{

/// A central object service in a process of its own, and strangers who want to have all of it.
class Flood : public testing::Test
{
protected:
    /// Over new connections.
    bool answers() const
    {
        const CCO::IF_CCO_c_var service = process.service(10s);
        return waitUntil([&] {
            try {
                return std::string(CORBA::String_var(service->GetSubSystemName())) == "South";
            } catch (const CORBA::SystemException &) {
                return false;
            }
        });
    }
    CcoProcess process{"South", "ws1"};
};

TEST_F(Flood, OfSilentConnectionsLeavesDescriptorsForOthers)
{
    process.limitDescriptors(128);
    const StrangersConnections silent(process.port(), 200);
    EXPECT_TRUE(answers());
    EXPECT_LE(process.descriptors(), 112u); // an eighth stays free
}

struct BytesCase {
    const char *label;
    std::string bytes;
};

std::string randomBytes()
{
    std::mt19937 random(20261122);
    std::string bytes(1000, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

class FloodOfBytes : public Flood, public testing::WithParamInterface<BytesCase>
{
};

TEST_P(FloodOfBytes, DoesNotKeepTheServiceFromAnswering)
{
    for (int round = 0; round < 3; ++round) {
        StrangersConnections strangers(process.port(), 100);
        strangers.send(GetParam().bytes);
        EXPECT_TRUE(answers());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, FloodOfBytes,
    testing::Values(BytesCase{"Random", randomBytes()}, BytesCase{"HalfAHeader", std::string("GIOP\1\2", 6)},
                    BytesCase{"MessageOfAllSizes", std::string("GIOP\1\2\1\0\xff\xff\xff\x7f", 12)},
                    BytesCase{"MessageThatNeverEnds", std::string("GIOP\1\2\1\0\0\0\1\0", 12) + "half"},
                    BytesCase{"UnknownVersion", std::string("GIOP\7\7\1\0\0\0\0\0", 12)},
                    BytesCase{"UnknownMessage", std::string("GIOP\1\2\1\x63\0\0\0\0", 12)},
                    BytesCase{"AnotherProtocol", "GET / HTTP/1.1\r\n\r\n"}),
    [](const auto &info) { return std::string(info.param.label); });

} // namespace
