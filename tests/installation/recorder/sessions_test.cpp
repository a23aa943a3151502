#include "installation/recorder/descriptor.h"
#include "installation/recorder/recorderservice.h"
#include "installation/recorder/recordstore.h"
#include "installation/recorder/sessionfailure.h"
#include "installation/recorder/sessions.h"
#include "tests/installation/recorder/refusal.h"
#include "tests/installation/recorder/servingprocess.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/resource.h>

#include <algorithm>
#include <vector>

using namespace installation::recorder;

namespace
{

const installation::ServedObjects nothing{PortableServer::POA::_nil()};

TEST(SessionsOfARecorder, AreNotMadeWhenItEnds)
{
    const QTemporaryDir directory;
    const auto notifier = std::make_shared<Notifier>([] { return quint64(1); });
    const auto sessions = std::make_shared<Sessions>(
        Sessions::Surroundings{nothing, std::make_shared<StoreThread>(directory.path()),
                               std::make_shared<Activities>(), notifier, [] { return quint64(1); }});
    sessions->stop();
    const auto nobody = TQ_KORVE_IT::IF_Korve_IT::_nil();
    EXPECT_EQ(kindOf([&] { sessions->replay("R1", nobody, {}); }), TQ_KORVE::ekSESSION_CREATION_FAILED);
    EXPECT_EQ(kindOf([&] { sessions->record({}, nobody, {}); }), TQ_KORVE::ekSESSION_CREATION_FAILED);
}

/// While it lives, the process gets @p count further file descriptors and no more.
class FewDescriptors
{
public:
    explicit FewDescriptors(int count)
    {
        int greatest = 0;
        for (const QString &number : QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::AllEntries | QDir::System))
            greatest = std::max(greatest, number.toInt());
        do // into each gap
            held.emplace_back(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        while (held.back().get() <= greatest);
        getrlimit(RLIMIT_NOFILE, &before);
        const rlimit few{rlim_t(held.back().get() + count), before.rlim_max};
        held.pop_back();
        setrlimit(RLIMIT_NOFILE, &few);
    }
    FewDescriptors(const FewDescriptors &) = delete;
    ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &before); }

private:
    std::vector<Descriptor> held;
    rlimit before{};
};

TEST(SessionsOfARecorder, LeaveNoRecordOfARecordingThatCannotBegin)
{
    const QTemporaryDir directory;
    const auto store = std::make_shared<StoreThread>(directory.path());
    const auto sessions = std::make_shared<Sessions>(
        Sessions::Surroundings{nothing, store, std::make_shared<Activities>(),
                               std::make_shared<Notifier>([] { return quint64(1); }), [] { return quint64(1); }});
    {
        const FewDescriptors one(1); // which the file of the samples takes
        EXPECT_EQ(kindOf([&] { sessions->record({}, TQ_KORVE_IT::IF_Korve_IT::_nil(), {}); }), TQ_KORVE::ekRESSOURCES_EXHAUSTED);
    }
    EXPECT_TRUE(store->ask([](RecordStore &records) { return records.records(); }).isEmpty());
}

TEST(SessionsOfARecorder, NeedAnAddressForTheirLinks)
{
    const QTemporaryDir directory;
    RecorderConfiguration configuration{directory.path()};
    configuration.linkAddress = "300.1.1.1";
    EXPECT_EQ(kindOf([&] { RecorderService(configuration, PortableServer::POA_var()); }), TQ_KORVE::ekINVALID_CONFIGURATION);
}

TEST(SessionsOfARecorder, TellFaultsOfTheirOwnByAKind)
{
    const auto fault = [] { throw std::runtime_error("a fault"); };
    try {
        answerLink("startDataTransfer", fault);
        ADD_FAILURE() << "nothing was raised";
    } catch (const LLDCmodule::exLLDC &failure) {
        EXPECT_EQ(failure.kind, LLDCmodule::ekUnknown);
        EXPECT_STREQ(failure.text, "a fault");
    }
    try {
        answerDevice("setReplayBegin", fault);
        ADD_FAILURE() << "nothing was raised";
    } catch (const TQ_KORVE::exKorve &failure) {
        EXPECT_EQ(failure.kind, TQ_KORVE::ekIMPLEMENTATION_FAULT);
        EXPECT_STREQ(failure.text, "a fault");
    }
}

TEST(ActivitiesOfRecords, AreOnePerRecord)
{
    const auto activities = std::make_shared<Activities>();
    RecordSummary record;
    record.id = "R1";
    auto activity = activities->begin("R1", "air", KORVE_XML::KORVE_RecordData::COPYING);
    EXPECT_EQ(activities->overlaid(record).status, KORVE_XML::KORVE_RecordData::COPYING);
    EXPECT_EQ(kindOf([&] { activities->requireNone("R1"); }), TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
    EXPECT_EQ(kindOf([&] { activities->begin("R1", "air", KORVE_XML::KORVE_RecordData::REPLAYING); }),
              TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
    activities->requireNone("R2");
    activity.reset();
    activities->requireNone("R1");
    EXPECT_EQ(activities->overlaid(record).status, KORVE_XML::KORVE_RecordData::IDLE);
}

} // namespace
