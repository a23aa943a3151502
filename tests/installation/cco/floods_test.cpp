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
    static CCO::seqString listOf(std::size_t bytes) { return sequenceOf({std::string(bytes, 'x')}); }
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
    /// How many names of @p folder the service takes, each with @p bytes of values.
    std::size_t takenOf(const std::string &folder, std::size_t wanted, std::size_t bytes) const
    {
        const CCO::IF_CCO_c_var service = process.service(10s);
        for (std::size_t taken = 0; taken < wanted; ++taken) {
            try {
                service->RegisterValues((folder + std::to_string(taken)).c_str(), listOf(bytes), 0);
            } catch (const CORBA::NO_RESOURCES &) {
                return taken;
            }
        }
        return wanted;
    }

    CcoProcess process{"South", "ws1"};
};

TEST_F(Flood, OfValuesIsNotKept)
{
    EXPECT_EQ(takenOf("Large/", 300, 1'700'000), 0u);
    EXPECT_LE(takenOf("Middling/", 300, 100'000), 10u);
}

TEST_F(Flood, OfNamesLeavesRoomForRecordersAndManagers)
{
    EXPECT_EQ(takenOf("Other/", 20'000, 10), 1000u);
    EXPECT_EQ(takenOf("KorveRecorder/", 20'000, 10), 1000u);
    EXPECT_EQ(takenOf("KorveManager/", 1, 10), 1u);
}

TEST_F(Flood, OfIndicationsIsNotKept)
{
    const CCO::IF_CCO_c_Update_var update = process.update();
    update->StartupIndication(std::string(1'000'000, 'x').c_str());
    EXPECT_FALSE(update->CheckIndication(std::string(1'000'000, 'x').c_str()));
    for (int i = 0; i < 300; ++i)
        update->StartupIndication(std::to_string(i).c_str());
    EXPECT_TRUE(update->CheckIndication("0"));
    EXPECT_FALSE(update->CheckIndication("299"));
}

TEST_F(Flood, OfCallbacksIsNotKept)
{
    const CallbackOwner callback(RecordingCallback::make());
    const CCO::Callback_var reference = callback->reference();
    const CCO::IF_CCO_c_var service = process.service(10s);
    CCO::seqInterest interests;
    interests.length(101);
    EXPECT_THROW(CCO::CBRegistration_var(service->register_callback(reference, interests)), CORBA::BAD_PARAM);
    interests.length(1);
    interests[0].name = std::string(1001, 'x').c_str();
    EXPECT_THROW(CCO::CBRegistration_var(service->register_callback(reference, interests)), CORBA::BAD_PARAM);
    interests[0].name = "A";
    for (int i = 0; i < 64; ++i)
        CCO::CBRegistration_var(service->register_callback(reference, interests));
    EXPECT_THROW(CCO::CBRegistration_var(service->register_callback(reference, interests)), CORBA::NO_RESOURCES);
    callback->retire();
}

TEST_F(Flood, OfSilentConnectionsLeavesDescriptorsForOthers)
{
    process.limitDescriptors(128);
    const auto before = process.descriptors();
    const StrangersConnections silent(process.port(), 400); // faster than they are looked at
    EXPECT_TRUE(answers()); // behind all of them
    // An eighth stays free, and half of the others is for one address; beside it there is ours.
    EXPECT_TRUE(waitUntil([&] { return process.descriptors() <= before + 56 + 2; })) << process.descriptors();
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
