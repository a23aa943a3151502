#include "tests/connectionmanagement/handlerfixture.h"

#include "tests/appruntime/capturedtraces.h"

using namespace KorveCommon;
using namespace TQ_KRV;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{
const QString d1 = QStringLiteral("D1");
const QString d2 = QStringLiteral("D2");

/// Connected.
class HandlersInterfaces : public HandlerFixture
{
protected:
    HandlersInterfaces() { upAll(); }

    Handler handler{alpha, station, QString()};
    const bool connected = handler.ReconnectToServer();
    QVector<KORVE_XML::KORVE_RecordData> records;
};

TEST_F(HandlersInterfaces, AreAllNilWhileItIsNotConnected)
{
    handler.Shutdown();
    CapturedTraces traces(32);
    EXPECT_TRUE(CORBA::is_nil(IF_KRV_c_KRV_var(handler.GetKorveInterface())));
    EXPECT_TRUE(CORBA::is_nil(IF_KORVE_Replay_var(handler.GetReplayInterface(d1))));
    EXPECT_TRUE(CORBA::is_nil(IF_KRV_c_Chan_var(handler.GetKorveChannelInterface(d1))));
    EXPECT_TRUE(CORBA::is_nil(IF_KORVE_Admin_var(handler.GetKorveAdminInterface())));
    EXPECT_EQ(handler.getAllRecords(d1, records), 201u);
    EXPECT_THAT(manager.calls, IsEmpty());
    EXPECT_THAT(traces.texts(), Not(Contains(HasSubstr("KorveGuiToServerCorbaHandler")))); // none is a failure
}

TEST_F(HandlersInterfaces, AreNotAskedForWithoutAnId)
{
    EXPECT_TRUE(CORBA::is_nil(IF_KORVE_Replay_var(handler.GetReplayInterface(QString()))));
    EXPECT_TRUE(CORBA::is_nil(IF_KRV_c_Chan_var(handler.GetKorveChannelInterface(QString()))));
    EXPECT_THAT(manager.calls, IsEmpty());
}

TEST_F(HandlersInterfaces, AreThoseOfTheFirstIdUntilTheConnectionIsDropped)
{
    const IF_KORVE_Replay_var first = handler.GetReplayInterface(d1);
    const IF_KORVE_Replay_var second = handler.GetReplayInterface(d2);
    EXPECT_TRUE(first->_is_equivalent(second));
    const IF_KRV_c_Chan_var channel = handler.GetKorveChannelInterface(d1);
    const IF_KRV_c_Chan_var sameChannel = handler.GetKorveChannelInterface(d2);
    EXPECT_TRUE(channel->_is_equivalent(sameChannel));
    handler.Shutdown();
    ASSERT_TRUE(handler.ReconnectToServer());
    const IF_KORVE_Replay_var third = handler.GetReplayInterface(d2);
    EXPECT_FALSE(first->_is_equivalent(third));
    const IF_KRV_c_Chan_var otherChannel = handler.GetKorveChannelInterface(d2);
    EXPECT_FALSE(channel->_is_equivalent(otherChannel));
    EXPECT_THAT(manager.calls, ElementsAre("getKorveReplayInterface D1", "getKorveChannelInterface D1",
                                           "getKorveReplayInterface D2", "getKorveChannelInterface D2"));
}

TEST_F(HandlersInterfaces, AreAskedForInLatin1)
{
    const IF_KORVE_Replay_var replay = handler.GetReplayInterface(QString::fromUtf8("D\xc3\xbc"));
    EXPECT_THAT(manager.calls, ElementsAre("getKorveReplayInterface D\xfc"));
}

TEST_F(HandlersInterfaces, ForAdministrationIsFetchedOnce)
{
    const IF_KORVE_Admin_var first = handler.GetKorveAdminInterface();
    const IF_KORVE_Admin_var second = handler.GetKorveAdminInterface();
    EXPECT_FALSE(CORBA::is_nil(first));
    EXPECT_TRUE(first->_is_equivalent(second));
    EXPECT_THAT(manager.calls, ElementsAre("getKorveAdminInterface"));
}

TEST_F(HandlersInterfaces, AreNilWhenTheManagerFails)
{
    manager.trouble = [] { throw CORBA::TRANSIENT(); };
    CapturedTraces traces(32);
    EXPECT_TRUE(CORBA::is_nil(IF_KORVE_Replay_var(handler.GetReplayInterface(d1))));
    EXPECT_EQ(traces.sourceOf("KorveGuiToServerCorbaHandler::GetReplayInterface(): unknown exception."),
              "connectionmanagement/korveguitoservercorbahandler");
    EXPECT_TRUE(CORBA::is_nil(IF_KORVE_Admin_var(handler.GetKorveAdminInterface())));
    manager.trouble = [] {};
    EXPECT_FALSE(CORBA::is_nil(IF_KORVE_Replay_var(handler.GetReplayInterface(d1))));
}

TEST_F(HandlersInterfaces, ForChannelsLetFailuresThrough)
{
    manager.trouble = [] { throw CORBA::TRANSIENT(); };
    EXPECT_THROW(IF_KRV_c_Chan_var(handler.GetKorveChannelInterface(d1)), CORBA::TRANSIENT);
}

struct RecordsCase {
    const char *name;
    std::function<void()> trouble;
    unsigned long number;
    const char *trace;
};

void refuse(IF_KRV_c_KRV::eKRVKind kind)
{
    throw IF_KRV_c_KRV::exKRV(kind, "no, sorry");
}

class FailingRecords : public HandlersInterfaces, public testing::WithParamInterface<RecordsCase>
{
};

TEST_P(FailingRecords, HaveANumber)
{
    manager.trouble = GetParam().trouble;
    CapturedTraces traces(32);
    EXPECT_EQ(handler.getAllRecords(d1, records), GetParam().number);
    EXPECT_TRUE(records.isEmpty());
    EXPECT_THAT(traces.texts(), Contains(GetParam().trace));
    EXPECT_TRUE(handler.IsConnected());
}

const char *const traced = "KorveGuiToServerCorbaHandler::getAllRecords(): exception ";
const std::string transient = std::string(traced) + "TRANSIENT";
const std::string notExisting = std::string(traced) + "OBJECT_NOT_EXIST";
const std::string unknown = std::string(traced) + "UNKNOWN";
const std::string failure = std::string(traced) + "COMM_FAILURE";

INSTANTIATE_TEST_SUITE_P(
    Exceptions, FailingRecords,
    testing::Values(RecordsCase{"DeviceUnknown", [] { refuse(IF_KRV_c_KRV::Invalid_DeviceId); }, 202, "no, sorry"},
                    RecordsCase{"AddressRefused", [] { refuse(IF_KRV_c_KRV::Invalid_Address); }, 203, "no, sorry"},
                    RecordsCase{"RequestFailed", [] { refuse(IF_KRV_c_KRV::Request_Failed); }, 203, "no, sorry"},
                    RecordsCase{"ManagerGone", [] { throw CORBA::OBJECT_NOT_EXIST(); }, 201, notExisting.c_str()},
                    RecordsCase{"ManagerNotReachable", [] { throw CORBA::TRANSIENT(); }, 201, transient.c_str()},
                    RecordsCase{"ConnectionLost", [] { throw CORBA::COMM_FAILURE(); }, 205, failure.c_str()},
                    RecordsCase{"Undeclared", [] { throw CCO::IF_CCO_c_Naming::InvalidType(); }, 205, unknown.c_str()}),
    [](const auto &info) { return std::string(info.param.name); });

seqRECORD_DATA recordsNamed(const std::vector<std::string> &ids)
{
    seqRECORD_DATA sequence;
    sequence.length(static_cast<CORBA::ULong>(ids.size()));
    for (CORBA::ULong i = 0; i < sequence.length(); ++i) {
        sequence[i] = struRECORD_DATA(); // a sequence leaves its numbers as they happen to be
        sequence[i].recordID = ids[i].c_str();
        sequence[i].recordName = L"name";
        sequence[i].recordStatus = rsIDLE;
        sequence[i].dataFormat = dfRAW;
        sequence[i].dataRate = drHF_4M;
    }
    return sequence;
}

TEST_F(HandlersInterfaces, AppendTheRecordsOfADevice)
{
    manager.records["D1"] = recordsNamed({"R1", "R2"});
    manager.records["D2"] = recordsNamed({"R3"});
    EXPECT_EQ(handler.getAllRecords(d1, records), 0u);
    EXPECT_EQ(handler.getAllRecords(d2, records), 0u);
    ASSERT_EQ(records.size(), 3);
    EXPECT_EQ(qAsConst(records).at(2).GetRecordID(), QStringLiteral("R3"));
    QVector<KORVE_XML::KORVE_RecordData> none;
    EXPECT_EQ(handler.getAllRecords(QStringLiteral("empty"), none), 0u); // nothing to convert is no failure
    EXPECT_TRUE(none.isEmpty());
}

/// Writes down what it is told.
class Listener : public IRecordStateChangedListener
{
public:
    explicit Listener(const QString &device) : device(device) {}
    void NotifyRecordStateChanged(const QString &second, const QString &third,
                                  const ChannelState::State &state) override
    {
        told << QStringLiteral("%1 %2 %3").arg(second, third, QString::number(state));
        if (whenTold)
            whenTold();
    }
    QString GetListenedDevice() override { return device; }

    QStringList told;
    std::function<void()> whenTold;

private:
    const QString device;
};

TEST_F(HandlersInterfaces, TellTheListenersOfTheDevice)
{
    Listener first(d1);
    Listener other(d2);
    handler.AddRecordStateChangeListener(&first);
    handler.AddRecordStateChangeListener(&first);
    handler.AddRecordStateChangeListener(&other);
    handler.AddRecordStateChangeListener(nullptr);
    handler.NotifyChannelStateChanged(d1, QStringLiteral("R1"), QStringLiteral("Name"), ChannelState::Replaying);
    EXPECT_EQ(first.told, QStringList{QStringLiteral("R1 Name 2")});
    EXPECT_TRUE(other.told.isEmpty());
    handler.RemoveRecordStateChangeListener(nullptr);
    handler.RemoveRecordStateChangeListener(&first);
    handler.NotifyChannelStateChanged(d1, QStringLiteral("R1"), QStringLiteral("Name"), ChannelState::Idle);
    EXPECT_EQ(first.told.size(), 1);
}

TEST_F(HandlersInterfaces, TellAllListenersAlthoughOneLeaves)
{
    Listener first(d1);
    Listener second(d1);
    Listener third(d1);
    for (Listener *listener : {&first, &second, &third})
        handler.AddRecordStateChangeListener(listener);
    first.whenTold = [&] { handler.RemoveRecordStateChangeListener(&first); };
    for (int i = 0; i < 2; ++i)
        handler.NotifyChannelStateChanged(d1, QStringLiteral("R1"), QString(), ChannelState::ReadyForReplay);
    EXPECT_EQ(first.told.size(), 1);
    EXPECT_EQ(second.told.size(), 2);
    EXPECT_EQ(third.told.size(), 2);
}
} // namespace
