#include "tests/installation/recorder/recordingfixture.h"

#include "installation/recorder/notifier.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <thread>

using namespace TQ_KORVE;
using installation::recorder::Notifier;

namespace
{

constexpr CORBA::ULong added = 0;
constexpr CORBA::ULong removed = 1;
constexpr CORBA::ULong changed = 2;
constexpr CORBA::ULong transferFinished = 3;

class Notification : public RecordingTest
{
protected:
    /// Waits, bounded, until nobody is told any more.
    static void expectNoReceiver(Notifier &notifier)
    {
        const QDeadlineTimer end(60'000);
        while (notifier.receiverCount() > 0 && !end.hasExpired())
            std::this_thread::yield();
        EXPECT_EQ(notifier.receiverCount(), 0u);
    }
};

TEST_F(Notification, TellsWhatHappensToARecord)
{
    NotifiedReceiver &told = announced();
    open();
    control->setRecordComment(id, wide(QString::fromUtf8("Jörg \xF0\x9F\x93\xBB")));
    session->endRecordingSession(wide(""));
    const auto all = told.upTo(false, removed);
    ASSERT_GE(all.size(), 4u);
    const auto expect = [&](std::size_t at, bool isStatus, CORBA::ULong notification) {
        EXPECT_EQ(all[at].isStatus, isStatus) << at;
        EXPECT_EQ(all[at].notification, notification) << at;
        EXPECT_EQ(all[at].recordId, id.in()) << at;
    };
    expect(0, true, rsREADY_FOR_RECORDING);
    expect(1, false, added);
    expect(2, false, changed);
    expect(all.size() - 1, false, removed);
    EXPECT_EQ(all[2].text, "Jörg \xF0\x9F\x93\xBB");
    EXPECT_EQ(all.back().text, all[2].text);
}

TEST_F(Notification, IsNumberedAndHasATime)
{
    const CORBA::ULongLong before = control->getSystemTime();
    NotifiedReceiver &told = announced();
    open();
    recordAll(pattern(400));
    const auto all = told.upTo(true, rsIDLE);
    ASSERT_GE(all.size(), 4u);
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(all[i].number, all[0].number + i);
        EXPECT_GE(all[i].timestampUs, before);
        EXPECT_LE(all[i].timestampUs, control->getSystemTime());
    }
}

TEST_F(Notification, EndsWithTheAnnouncement)
{
    open();
    NotifiedReceiver &told = announced();
    control->addHistory(id, wide("heard"));
    told.upTo(false, changed);
    control->removeNotificationReceiver(receiver);
    control->addHistory(id, wide("not heard"));
    control->announceNotificationReceiver(receiver);
    control->setRecordIdle(id);
    const auto all = told.upTo(false, removed);
    EXPECT_EQ(std::ranges::count_if(all, [](const auto &one) { return one.notification == changed && !one.isStatus; }), 1);
}

TEST_F(Notification, ComesFromTheRecordsOfTheReceiversSessions)
{
    receiver = orb->activate(*notified);
    open();
    const CORBA::String_var other = CORBA::string_dup(id);
    const IF_RecordingSession_var own = control->createRecordingSession(drHF_20k, 0, dfRAW, receiver);
    id = own->getId();
    control->addHistory(other, wide("elsewhere"));
    control->addHistory(id, wide("here"));
    own->endRecordingSession(wide(""));
    const auto all = notified->upTo(false, removed);
    ASSERT_GE(all.size(), 2u);
    for (const auto &one : all)
        EXPECT_EQ(one.recordId, id.in());
}

TEST_F(Notification, NeedsAReceiver)
{
    EXPECT_THROW(control->announceNotificationReceiver(TQ_KORVE_IT::IF_Korve_IT::_nil()), CORBA::BAD_PARAM);
    control->removeNotificationReceiver(TQ_KORVE_IT::IF_Korve_IT::_nil()); // nobody is no announced one
}

TEST_F(Notification, HasALimitedNumberOfReceivers)
{
    std::vector<TQ_KORVE_IT::IF_Korve_IT_var> receivers;
    for (std::size_t i = 0; i <= Notifier::maximumReceivers; ++i) {
        const PortableServer::Servant_var<NotifiedReceiver> servant(new CountedServant<NotifiedReceiver>);
        receivers.emplace_back(orb->activate(*servant)); // from here on the POA's alone
    }
    for (std::size_t i = 0; i < Notifier::maximumReceivers; ++i)
        control->announceNotificationReceiver(receivers[i]);
    EXPECT_THROW(control->announceNotificationReceiver(receivers.back()), CORBA::NO_RESOURCES);
    control->announceNotificationReceiver(receivers.front()); // this one is there already
    EXPECT_EQ(kindOf([&] { IF_RecordingSession_var(control->createRecordingSession(drHF_20k, 0, dfRAW, receivers.back())); }),
              ekRESSOURCES_EXHAUSTED);
    EXPECT_EQ(seqMETA_DATA_var(control->getActiveSessions())->length(), 0u);
    for (const auto &one : receivers)
        orb->deactivate(one);
}

TEST_F(Notification, ReachesWhoAskedForSomethingAlsoWhenThereAreManyReceivers)
{
    Notifier notifier([] { return quint64(1); });
    NotifiedReceiver *last = nullptr;
    std::vector<PortableServer::ServantBase_var> servants;
    std::vector<TQ_KORVE_IT::IF_Korve_IT_var> receivers;
    for (std::size_t i = 0; i <= Notifier::maximumReceivers; ++i) {
        servants.emplace_back(last = new CountedServant<NotifiedReceiver>);
        receivers.emplace_back(orb->activate(*last));
    }
    for (std::size_t i = 0; i < Notifier::maximumReceivers; ++i)
        notifier.announce(receivers[i]);
    notifier.tellOne(receivers.back(), Notifier::Change::TransferFinished, "R1", {});
    EXPECT_EQ(last->upTo(false, transferFinished).size(), 1u);
    for (const auto &one : receivers)
        orb->deactivate(one);
}

TEST_F(Notification, LetsTheReceiverOfASessionGo)
{
    const PortableServer::Servant_var<NotifiedReceiver> servant(new CountedServant<NotifiedReceiver>);
    const TQ_KORVE_IT::IF_Korve_IT_var one = orb->activate(*servant);
    Notifier notifier([] { return quint64(1); });
    notifier.attach(one, "R1");
    notifier.attach(one, "R2");
    notifier.tellStatus("R1", "air", KORVE_XML::KORVE_RecordData::IDLE);
    EXPECT_EQ(notifier.receiverCount(), 1u) << "it hears of the other one";
    notifier.tellStatus("R2", "sea", KORVE_XML::KORVE_RecordData::IDLE);
    expectNoReceiver(notifier);
    EXPECT_EQ(servant->upTo(true, rsIDLE).back().recordId, "R1") << "what was told before still arrives";
    orb->deactivate(one);
}

/// A receiver that fails each time.
class FailingReceiver : public NotifiedReceiver
{
public:
    void processNotification(const TQ_KORVE_IT::struNotification &what) override
    {
        NotifiedReceiver::processNotification(what);
        throw CORBA::NO_RESOURCES();
    }
};

TEST_F(Notification, GivesUpAReceiverThatFailsThreeTimes)
{
    auto *const servant = new FailingReceiver;
    const PortableServer::ServantBase_var owned(servant);
    const TQ_KORVE_IT::IF_Korve_IT_var failing = orb->activate(*servant);
    Notifier notifier([] { return quint64(1); });
    notifier.announce(failing);
    for (int i = 0; i < 5; ++i)
        notifier.tellChange(i == 2 ? Notifier::Change::TransferFailed : Notifier::Change::Changed, "R1", "air");
    EXPECT_EQ(servant->upTo(false, CORBA::ULong(Notifier::Change::TransferFailed)).size(), 3u);
    expectNoReceiver(notifier);
    orb->deactivate(failing);
}

} // namespace
