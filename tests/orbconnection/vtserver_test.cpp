#include "orbconnection/vtserver.h"

#include "orbconnection/corbaloc.h"
#include "orbconnection/mirrorwire.h"
#include "orbconnection/valuetree.hh"
#include "tests/orbconnection/mirrorpair.h"
#include "tests/orbconnection/observers.h"
#include "tests/orbconnection/ownorb.h"

#include <QCoreApplication>

#include <future>

using mirror::Record;
using mirror::RecordKind;

namespace
{
std::string textFrames(const char *content)
{
    TextValue value;
    value.SetValue(QLatin1String(content), nullptr);
    return value.GetCommandStringForTransmission();
}

VALUETREE::Batch batchOf(quint64 sequence, std::initializer_list<Record> records)
{
    std::string bytes;
    mirror::appendHeader(bytes, sequence);
    for (const Record &record : records)
        mirror::appendRecord(bytes, record);
    VALUETREE::Batch batch;
    batch.length(static_cast<CORBA::ULong>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), batch.get_buffer());
    return batch;
}

/// A server in this process, and its calls as a client makes them.
class CalledServer : public TwoTrees
{
protected:
    CalledServer()
    {
        const CORBA::Object_var object = orb.orb()->string_to_object(
            CorbaCommon::corbaloc(OwnOrb::addressFromOutside().ipAddress, VtServer::port, "ValueTree").toLatin1());
        client = VALUETREE::TreeServer::_unchecked_narrow(object);
        session = client->open("/K/Device", mirror::protocolVersion);
    }
    ~CalledServer() override { client->close(session); }

    /// Sets a value that the client has named, by its number.
    Record set(quint32 number, const std::string &frames) const
    {
        return {.kind = RecordKind::Set, .number = number, .type = state->GetType(), .frames = frames};
    }

    CorbaCommon::OrbHandler &orb = OwnOrb::instance();
    const std::string first = textFrames("first");
    const std::string second = textFrames("second");
    const VtServer server{serverTree, OwnOrb::timing()};
    VALUETREE::TreeServer_var client;
    CORBA::ULongLong session = 0;
};

TEST_F(CalledServer, AppliesWhatComesWhileAnObserverRunsAnEventLoopBehindWhatCameBefore)
{
    addText(serverTree, QStringLiteral("/K/Device/"), QStringLiteral("Mode"), QString());
    std::future<bool> pushed;
    const Answer loop(serverTree, "/K/Device/State", ChangeCodeValue, [&] {
        pushed = std::async(std::launch::async, [&] { return client->push(session, 2, batchOf(2, {set(2, second)})); });
        EXPECT_TRUE(OwnOrb::comesTrue([&] { return pushed.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
        QCoreApplication::processEvents(); // so that the server has had the chance
    });
    EXPECT_TRUE(client->push(session, 1,
                             batchOf(1, {{.kind = RecordKind::Path, .path = "State"},
                                         {.kind = RecordKind::Path, .path = "Mode"},
                                         set(1, first),
                                         set(2, first)})));
    ASSERT_TRUE(OwnOrb::comesTrue([&] { return pushed.valid(); }));
    EXPECT_TRUE(pushed.get());
    EXPECT_EQ(atServer("/K/Device/State"), QStringLiteral("first"));
    EXPECT_EQ(atServer("/K/Device/Mode"), QStringLiteral("second"));
}

TEST_F(CalledServer, AppliesWhatCameBeforeTheClientsEndAlsoWhenAnObserverRunsAnEventLoop)
{
    std::future<void> pushed;
    const Answer loop(serverTree, "/K/Device/State", ChangeCodeValue, [&] {
        if (pushed.valid())
            return;
        pushed = std::async(std::launch::async, [&] {
            client->push(session, 2, batchOf(2, {set(1, second)}));
            client->close(session);
        });
        EXPECT_TRUE(
            OwnOrb::comesTrue([&] { return pushed.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
        QCoreApplication::processEvents(); // so that the server has had the chance
    });
    EXPECT_TRUE(client->push(session, 1, batchOf(1, {{.kind = RecordKind::Path, .path = "State"}, set(1, first)})));
    ASSERT_TRUE(OwnOrb::comesTrue([&] { return pushed.valid() && server.sessionCount() == 0; }));
    pushed.get();
    EXPECT_EQ(atServer("/K/Device/State"), QStringLiteral("second"));
}
} // namespace
