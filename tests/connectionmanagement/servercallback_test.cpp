#include "connectionmanagement/servercallback.h"

#include "connectionmanagement/ichannelstatechangedlistener.h"
#include "tests/appruntime/capturedtraces.h"
#include "tests/connectionmanagement/liveinstallation.h"

#include <QCoreApplication>
#include <QThread>

#include <stdexcept>
#include <thread>
#include <type_traits>

using KorveGUI::ServerCallback;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
using State = KorveCommon::ChannelState::State;

/// Writes down what it is told, under its name in a diary that several share; may do more.
class Listener : public KorveCommon::IChannelStateChangedListener
{
public:
    explicit Listener(std::vector<std::string> &diary, std::string name = "") : diary(diary), name(std::move(name)) {}
    void NotifyChannelStateChanged(const QString &first, const QString &second, const QString &third,
                                   const State &state) override
    {
        diary.push_back(name + (QStringList{first, second, third}.join(u'|') + u' ').toStdString() +
                        std::to_string(state));
        thread = QThread::currentThread();
        whenTold();
    }
    std::function<void()> whenTold = [] {};
    QThread *thread = nullptr;

private:
    std::vector<std::string> &diary;
    const std::string name;
};

class RecordStates : public testing::Test
{
protected:
    /// As the ORB does it: on a thread of its own, which has gone before the main thread looks.
    void notify(int status, const char *name = "first")
    {
        std::thread orb([&] { callback->NotifyStateChange("D1", "R7", name, TQ_KRV::eRECORD_STATUS(status)); });
        orb.join();
    }
    static void runPosted() { QCoreApplication::sendPostedEvents(); }

    std::vector<std::string> diary;
    Listener listener{diary}, second{diary, "second "}, third{diary, "third "};
    PortableServer::Servant_var<ServerCallback> callback = new ServerCallback;
};

TEST_F(RecordStates, ReachListenersAsDeviceRecordNameAndState)
{
    callback->AddChannelStateChangeListener(&listener);
    notify(TQ_KRV::rsREADY_FOR_REPLAY);
    EXPECT_THAT(diary, IsEmpty()); // never from the ORB's thread
    runPosted();
    EXPECT_THAT(diary, ElementsAre("D1|R7|first 1"));
    EXPECT_EQ(listener.thread, QCoreApplication::instance()->thread());
}

TEST_F(RecordStates, AreThreeOfNine)
{
    callback->AddChannelStateChangeListener(&listener);
    for (int status = 0; status <= 20; ++status)
        notify(status, std::to_string(status).c_str());
    notify(-1);
    runPosted();
    EXPECT_THAT(diary, ElementsAre("D1|R7|0 1", "D1|R7|1 2", "D1|R7|5 0"));
}

TEST_F(RecordStates, ReachListenersLaterAlsoFromTheMainThread)
{
    callback->AddChannelStateChangeListener(&listener);
    callback->NotifyStateChange("D1", "R7", "", TQ_KRV::rsIDLE);
    EXPECT_THAT(diary, IsEmpty());
    runPosted();
    EXPECT_THAT(diary, ElementsAre("D1|R7| 0"));
}

TEST_F(RecordStates, KeepTheirTexts)
{
    callback->AddChannelStateChangeListener(&listener);
    notify(TQ_KRV::rsIDLE, "%1 \xc3\xa9\xf0\x9f\x93\xa1@/");
    runPosted();
    EXPECT_THAT(diary, ElementsAre("D1|R7|%1 \xc3\xa9\xf0\x9f\x93\xa1@/ 0"));
}

TEST_F(RecordStates, KeepNamesInTheCodeSetThatIsDeclared)
{
    callback->AddChannelStateChangeListener(&listener);
    notify(TQ_KRV::rsIDLE, "K\xf6ln");
    runPosted();
    EXPECT_THAT(diary, ElementsAre("D1|R7|K\xc3\xb6ln 0"));
}

TEST_F(RecordStates, ReachListenersOnceInTheOrderOfAdding)
{
    for (Listener *const one : {&second, &listener, &second, &third})
        callback->AddChannelStateChangeListener(one);
    notify(TQ_KRV::rsREPLAYING);
    runPosted();
    EXPECT_THAT(diary, ElementsAre("second D1|R7|first 2", "D1|R7|first 2", "third D1|R7|first 2"));
}

TEST_F(RecordStates, DoNotReachAListenerThatWasRemoved)
{
    for (Listener *const one : {&listener, &second})
        callback->AddChannelStateChangeListener(one);
    callback->RemoveChannelStateChangeListener(&listener);
    callback->RemoveChannelStateChangeListener(&listener);
    callback->RemoveChannelStateChangeListener(&third); // was never there
    notify(TQ_KRV::rsIDLE);
    runPosted();
    EXPECT_THAT(diary, ElementsAre("second D1|R7|first 0"));
}

TEST_F(RecordStates, IgnoreANullListener)
{
    callback->AddChannelStateChangeListener(nullptr);
    callback->AddChannelStateChangeListener(&listener);
    notify(TQ_KRV::rsIDLE, "a");
    runPosted();
    callback->RemoveChannelStateChangeListener(nullptr);
    notify(TQ_KRV::rsIDLE, "b");
    runPosted();
    EXPECT_THAT(diary, ElementsAre("D1|R7|a 0", "D1|R7|b 0"));
}

TEST_F(RecordStates, ArePostedWithoutListenersToo)
{
    notify(TQ_KRV::rsIDLE, "unheard");
    runPosted();
    notify(TQ_KRV::rsIDLE, "heard");
    callback->AddChannelStateChangeListener(&listener); // before the event runs
    runPosted();
    EXPECT_THAT(diary, ElementsAre("D1|R7|heard 0"));
}

TEST_F(RecordStates, LetAListenerRemoveItselfWhileItIsTold)
{
    for (Listener *const one : {&listener, &second, &third})
        callback->AddChannelStateChangeListener(one);
    listener.whenTold = [&] { callback->RemoveChannelStateChangeListener(&listener); };
    notify(TQ_KRV::rsIDLE, "a");
    notify(TQ_KRV::rsIDLE, "b");
    runPosted();
    EXPECT_THAT(diary,
                ElementsAre("D1|R7|a 0", "second D1|R7|a 0", "third D1|R7|a 0", "second D1|R7|b 0", "third D1|R7|b 0"));
}

TEST_F(RecordStates, ReachAListenerThatIsAddedMeanwhileFromTheNextOn)
{
    callback->AddChannelStateChangeListener(&listener);
    listener.whenTold = [&] { callback->AddChannelStateChangeListener(&second); };
    notify(TQ_KRV::rsIDLE, "a");
    notify(TQ_KRV::rsIDLE, "b");
    runPosted();
    EXPECT_THAT(diary, ElementsAre("D1|R7|a 0", "D1|R7|b 0", "second D1|R7|b 0"));
}

TEST_F(RecordStates, StillReachAListenerThatIsRemovedMeanwhile)
{
    for (Listener *const one : {&listener, &second})
        callback->AddChannelStateChangeListener(one);
    listener.whenTold = [&] { callback->RemoveChannelStateChangeListener(&second); };
    notify(TQ_KRV::rsIDLE, "a");
    notify(TQ_KRV::rsIDLE, "b");
    runPosted();
    EXPECT_THAT(diary, ElementsAre("D1|R7|a 0", "second D1|R7|a 0", "D1|R7|b 0"));
}

TEST_F(RecordStates, ReachNobodyOnceTheServantIsGone)
{
    callback->AddChannelStateChangeListener(&listener);
    notify(TQ_KRV::rsIDLE);
    callback = nullptr;
    runPosted();
    EXPECT_THAT(diary, IsEmpty());
}

TEST_F(RecordStates, AreSaidToBeTheServantsWhenAListenerIsInTrouble)
{
    callback->AddChannelStateChangeListener(&listener);
    listener.whenTold = [] { throw std::runtime_error("trouble"); };
    notify(TQ_KRV::rsIDLE);
    CapturedTraces traces(32);
    EXPECT_NO_THROW(runPosted());
    EXPECT_THAT(traces.texts(), ElementsAre("Exception in an event of connectionmanagement/servercallback: trouble"));
}

#ifndef QT_NO_DEBUG
TEST_F(RecordStates, HaveTheirListenersOnTheMainThread)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(std::thread([this] { callback->AddChannelStateChangeListener(&listener); }).join(), "isMainThread");
    EXPECT_DEATH(std::thread([this] { callback->RemoveChannelStateChangeListener(&listener); }).join(), "isMainThread");
}
#endif

TEST(RecordStatesServant, IsOneOfTheManagersCallback)
{
    EXPECT_TRUE((std::is_base_of_v<POA_TQ_KRV::IF_RecordStateChangeCallback, ServerCallback>));
    EXPECT_TRUE((std::is_base_of_v<PortableServer::RefCountServantBase, ServerCallback>));
}

/// The servant as an object of the ORB.
class LiveRecordStates : public LiveInstallation
{
protected:
    std::vector<std::string> diary;
    Listener listener{diary};
};

TEST_F(LiveRecordStates, ArriveOverAReference)
{
    const PortableServer::Servant_var<ServerCallback> callback = new ServerCallback;
    callback->AddChannelStateChangeListener(&listener);
    const PortableServer::ObjectId_var objectId = orb.rootPoa()->activate_object(callback);
    const TQ_KRV::IF_RecordStateChangeCallback_var reference = callback->_this();
    std::thread manager([&] { reference->NotifyStateChange("D1", "R7", "first", TQ_KRV::rsREPLAYING); });
    EXPECT_TRUE(comesTrue([this] { return !diary.empty(); }));
    manager.join();
    orb.rootPoa()->deactivate_object(objectId);
    EXPECT_THAT(diary, ElementsAre("D1|R7|first 2"));
}
} // namespace
