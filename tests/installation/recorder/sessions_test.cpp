#include "installation/recorder/recorderservice.h"
#include "installation/recorder/sessionfailure.h"
#include "installation/recorder/sessions.h"
#include "tests/installation/recorder/refusal.h"
#include "tests/installation/recorder/servingprocess.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

using namespace installation::recorder;

namespace
{

TEST(SessionsOfARecorder, AreNotMadeWhenItEnds)
{
    const QTemporaryDir directory;
    const auto notifier = std::make_shared<Notifier>([] { return quint64(1); });
    const auto sessions = std::make_shared<Sessions>(
        Sessions::Surroundings{PortableServer::POA_var(), std::make_shared<StoreThread>(directory.path()),
                               std::make_shared<Activities>(), notifier, [] { return quint64(1); }});
    sessions->stop();
    const auto nobody = TQ_KORVE_IT::IF_Korve_IT::_nil();
    EXPECT_EQ(kindOf([&] { sessions->replay("R1", nobody, {}); }), TQ_KORVE::ekSESSION_CREATION_FAILED);
    EXPECT_EQ(kindOf([&] { sessions->record({}, nobody, {}); }), TQ_KORVE::ekSESSION_CREATION_FAILED);
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
