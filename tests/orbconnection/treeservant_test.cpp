#include "orbconnection/corbaloc.h"
#include "orbconnection/mirrorwire.h"
#include "orbconnection/sessiongate.h"
#include "orbconnection/valuetree.hh"
#include "tests/orbconnection/livetreeserver.h"

using namespace VALUETREE;
using namespace std::string_literals;

namespace
{
/// Calls as a client makes them, and as it should not.
class TreeServerCall : public LiveTreeServer
{
protected:
    TreeServer_ptr reference() const
    {
        const QString text = CorbaCommon::corbaloc(lease.address(), 8004, "ValueTree");
        const CORBA::Object_var object = orb.orb()->string_to_object(text.toLatin1().constData());
        return TreeServer::_unchecked_narrow(object);
    }
    /// The next batch that says something.
    Delivery *nextAfter(CORBA::ULongLong session, CORBA::ULongLong received) const
    {
        for (int i = 0; i < 50; ++i) {
            Delivery_var delivery = tree->pull(session, received, true);
            if (delivery->number != 0)
                return delivery._retn();
        }
        throw std::runtime_error("nothing comes");
    }
    static Batch batchOf(const std::string &bytes)
    {
        Batch batch;
        batch.length(static_cast<CORBA::ULong>(bytes.size()));
        std::copy(bytes.begin(), bytes.end(), batch.get_buffer());
        return batch;
    }
    static bool beginsSnapshot(const Delivery &delivery)
    {
        return delivery.bytes.length() > mirror::batchHeaderBytes && delivery.bytes[mirror::batchHeaderBytes] == 1;
    }

    TreeServer_var tree = reference();
};

TEST_F(TreeServerCall, OfAnotherVersionIsRefusedWithTheOwn)
{
    try {
        tree->open("/K", 1);
        FAIL();
    } catch (const VersionNotSupported &e) {
        EXPECT_EQ(e.supported, 2u);
    }
}

TEST_F(TreeServerCall, OfAnUnknownSessionIsRefused)
{
    EXPECT_THROW(tree->pull(1, 0, true), SessionUnknown);
    EXPECT_THROW(tree->push(1, 1, Batch()), SessionUnknown);
    EXPECT_THROW(tree->resynchronise(1), SessionUnknown);
    EXPECT_NO_THROW(tree->close(1));
}

struct RudePush {
    const char *name;
    quint64 number;
    std::string records;
};

void PrintTo(const RudePush &row, std::ostream *out)
{
    *out << row.name;
}

class ARudePush : public TreeServerCall, public testing::WithParamInterface<RudePush>
{
protected:
    static Batch batch()
    {
        std::string bytes;
        mirror::appendHeader(bytes, GetParam().number);
        bytes += GetParam().records;
        return batchOf(bytes);
    }
};

TEST_P(ARudePush, EndsItsSessionAndNoOther)
{
    const CORBA::ULongLong session = tree->open("/K", mirror::protocolVersion);
    const CORBA::ULongLong other = tree->open("/K", mirror::protocolVersion);
    const Delivery_var first = nextAfter(session, 0);
    const Delivery_var firstOfOther = nextAfter(other, 0);
    EXPECT_TRUE(tree->push(session, 1, batch()));
    EXPECT_THROW(nextAfter(session, first->number), SessionUnknown);
    server().tell("set /K/Device/State busy");
    const Delivery_var next = nextAfter(other, firstOfOther->number);
    EXPECT_EQ(next->number, firstOfOther->number + 1);
    tree->close(other);
}

INSTANTIATE_TEST_SUITE_P(Pushes, ARudePush,
                         testing::Values(RudePush{"OfAnotherNumber", 2, ""}, RudePush{"OfNoRecords", 1, "\xee\xee"},
                                         RudePush{"OfAServersRecord", 1, "\2"},
                                         RudePush{"OfAHugeLength", 1, "\4\xff\xff\xff\xff"s},
                                         RudePush{"OfAPathThatNobodyNamed", 1, "\x08\1\0\0\0"s},
                                         RudePush{"CutShort", 1, "\x08\1\0"s}),
                         [](const auto &row) { return row.param.name; });

TEST_F(TreeServerCall, OfAPathThatIsTooLongIsRefused)
{
    EXPECT_THROW(tree->open(std::string(5000, 'x').c_str(), mirror::protocolVersion), CORBA::BAD_PARAM);
}

TEST_F(TreeServerCall, GivesBackTheRoomOfWhatWasApplied)
{
    startServer(1000);
    const CORBA::ULongLong session = tree->open("/K", mirror::protocolVersion);
    for (quint64 number = 1; number <= 40; ++number) {
        std::string bytes;
        mirror::appendHeader(bytes, number);
        ASSERT_TRUE(comesTrue([&] { return tree->push(session, number, batchOf(bytes)); })) << number;
    }
    tree->close(session);
    for (int times = 0; times < 40; ++times) { // also of sessions that are gone by then
        std::string bytes;
        mirror::appendHeader(bytes, 1);
        ASSERT_TRUE(comesTrue([&] {
            const CORBA::ULongLong another = tree->open("/K", mirror::protocolVersion);
            const bool taken = tree->push(another, 1, batchOf(bytes));
            tree->close(another);
            return taken;
        })) << times;
    }
}

TEST_F(TreeServerCall, ForMoreSessionsThanOneAddressMayHaveIsRefused)
{
    std::size_t opened = 0;
    try {
        for (; opened < mirror::SessionGate::maximumSessions; ++opened)
            tree->open("/K", mirror::protocolVersion);
    } catch (const CORBA::NO_RESOURCES &) {
        // Now, or a little later, if some were lost meanwhile.
        EXPECT_GE(opened, mirror::SessionGate::maximumOfOneAddress);
    }
    EXPECT_LT(opened, mirror::SessionGate::maximumSessions);
}

TEST_F(TreeServerCall, ForASnapshotIsAnsweredEachTime)
{
    const CORBA::ULongLong session = tree->open("/K", mirror::protocolVersion);
    Delivery_var last = nextAfter(session, 0);
    for (int times = 0; times < 3; ++times) {
        tree->resynchronise(session);
        last = nextAfter(session, last->number);
        EXPECT_TRUE(beginsSnapshot(last)) << times;
    }
    tree->close(session);
}

TEST_F(TreeServerCall, WithANumberFromTheFutureOnlyMissesWhatItSkips)
{
    const CORBA::ULongLong session = tree->open("/K", mirror::protocolVersion);
    const Delivery_var first = nextAfter(session, 0);
    const Delivery_var nothing = tree->pull(session, ~CORBA::ULongLong(0), true);
    EXPECT_EQ(nothing->number, 0u);
    server().tell("set /K/Device/State busy");
    const Delivery_var next = nextAfter(session, first->number);
    EXPECT_EQ(next->number, first->number + 1);
    tree->close(session);
}

TEST_F(TreeServerCall, IsAnsweredAgainWhenTheAnswerWasLost)
{
    const CORBA::ULongLong session = tree->open("/K", mirror::protocolVersion);
    const Delivery_var first = nextAfter(session, 0);
    const Delivery_var again = nextAfter(session, 0);
    EXPECT_EQ(first->number, again->number);
    EXPECT_EQ(first->bytes.length(), again->bytes.length());
    tree->close(session);
}

TEST_F(TreeServerCall, WithoutRoomReturnsAtOnceWithNothing)
{
    const CORBA::ULongLong session = tree->open("/K", mirror::protocolVersion);
    const Delivery_var first = nextAfter(session, 0);
    const Delivery_var nothing = tree->pull(session, 0, false);
    EXPECT_EQ(nothing->number, 0u);
    tree->close(session);
}

TEST_F(TreeServerCall, AfterManyUnreadChangesGetsTheLastOne)
{
    const CORBA::ULongLong session = tree->open("/K", mirror::protocolVersion);
    const Delivery_var first = nextAfter(session, 0);
    ASSERT_TRUE(beginsSnapshot(first));
    server().tell("burst /K/Device/State 10000");
    ASSERT_EQ(atServer("/K/Device/State"), QStringLiteral("10000"));
    const Delivery_var second = nextAfter(session, first->number);
    EXPECT_EQ(second->number, first->number + 1);
    EXPECT_LT(second->bytes.length(), 1000u);
    tree->close(session);
}

TEST_F(TreeServerCall, ASnapshotTakesThePlaceOfWhatWaits)
{
    const CORBA::ULongLong session = tree->open("/K", mirror::protocolVersion);
    const Delivery_var first = nextAfter(session, 0);
    server().tell("set /K/Device/State waits");
    ASSERT_EQ(atServer("/K/Device/State"), QStringLiteral("waits"));
    ASSERT_EQ(atServer("/K/Device/State"), QStringLiteral("waits"));
    tree->resynchronise(session);
    ASSERT_EQ(atServer("/K/Device/State"), QStringLiteral("waits"));
    ASSERT_EQ(atServer("/K/Device/State"), QStringLiteral("waits"));
    const Delivery_var next = nextAfter(session, first->number);
    EXPECT_TRUE(beginsSnapshot(next));
    tree->close(session);
}

TEST_F(TreeServerCall, OfASilentClientFindsNoSession)
{
    const CORBA::ULongLong session = tree->open("/K", mirror::protocolVersion);
    const Delivery_var first = nextAfter(session, 0);
    EXPECT_TRUE(comesTrue([&] {
        try {
            tree->resynchronise(session); // no sign of life
            return false;
        } catch (const SessionUnknown &) {
            return true;
        }
    }));
}
} // namespace
