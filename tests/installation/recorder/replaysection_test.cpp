#include "installation/recorder/recordererror.h"
#include "installation/recorder/replaysection.h"

#include <gtest/gtest.h>

using namespace installation::recorder;

namespace
{

/// A hundred samples of four bytes.
class Section : public testing::Test
{
protected:
    template <typename Action> void expectInvalid(Action action)
    {
        try {
            action();
            ADD_FAILURE() << "it was taken";
        } catch (const RecorderError &error) {
            EXPECT_EQ(error.kind(), TQ_KORVE::ekINVALID_VALUE) << error.what();
        }
    }
    void send(quint64 bytes)
    {
        section.depart();
        section.advance(bytes);
    }

    ReplaySection section{400, 4};
};

TEST_F(Section, IsTheWholeRecordOnce)
{
    EXPECT_EQ(section.left(), 400u);
    send(400);
    EXPECT_EQ(section.left(), 0u);
    EXPECT_FALSE(section.beginNextPass());
}

TEST_F(Section, TakesPlacesBetweenSamplesOnly)
{
    expectInvalid([&] { section.setBegin(2); });
    expectInvalid([&] { section.setEnd(399); });
    expectInvalid([&] { section.setPosition(1); });
    expectInvalid([&] { section.setBegin(400); });
    expectInvalid([&] { section.setEnd(404); });
    expectInvalid([&] { section.setEnd(0); });
    expectInvalid([&] { section.setPosition(400); });
    expectInvalid([&] { section.setPosition(18'446'744'073'709'551'612u); });
    EXPECT_EQ(section.begin(), 0u);
    EXPECT_EQ(section.end(), 400u);
    EXPECT_EQ(section.position(), 0u);
}

TEST_F(Section, KeepsThePositionInside)
{
    section.setEnd(300);
    section.setBegin(100);
    EXPECT_EQ(section.position(), 100u);
    expectInvalid([&] { section.setPosition(96); });
    expectInvalid([&] { section.setPosition(300); });
    expectInvalid([&] { section.setBegin(300); });
    expectInvalid([&] { section.setEnd(100); });
    section.setPosition(296);
    EXPECT_EQ(section.left(), 4u);
}

TEST_F(Section, IsPlayedAsOftenAsWanted)
{
    section.setBegin(100);
    section.setPasses(3);
    for (int pass = 1; pass <= 3; ++pass) {
        EXPECT_EQ(section.position(), 100u);
        send(section.left());
        EXPECT_EQ(section.beginNextPass(), pass < 3);
    }
}

TEST_F(Section, IsPlayedWithoutEnd)
{
    section.setPasses(0);
    for (int pass = 0; pass < 1000; ++pass) {
        send(section.left());
        ASSERT_TRUE(section.beginNextPass());
    }
}

TEST_F(Section, CountsThePassesThatAreDone)
{
    section.setPasses(0);
    for (int pass = 0; pass < 5; ++pass) {
        send(section.left());
        section.beginNextPass();
    }
    section.setPasses(3);
    send(section.left());
    EXPECT_FALSE(section.beginNextPass());
}

TEST_F(Section, CompletesASampleBeforeItJumps)
{
    send(6);
    section.setPosition(200);
    EXPECT_EQ(section.samplePosition(), 200u);
    EXPECT_EQ(section.position(), 6u);
    EXPECT_EQ(section.left(), 2u);
    send(2);
    EXPECT_EQ(section.position(), 200u);
}

TEST_F(Section, TellsTheNextPlaceBetweenTwoSamples)
{
    send(5);
    EXPECT_EQ(section.samplePosition(), 8u);
    section.setBegin(8);
    EXPECT_EQ(section.left(), 395u); // the sample that has begun, and all that follow
}

TEST_F(Section, GoesOnWithAWholeSampleForAnotherReceiver)
{
    send(6);
    section.dropBegun();
    EXPECT_EQ(section.position(), 4u);
    send(5);
    section.setPosition(200);
    section.dropBegun();
    EXPECT_EQ(section.position(), 200u);
    send(1);
    section.setBegin(204);
    section.dropBegun();
    EXPECT_EQ(section.position(), 204u);
}

TEST_F(Section, JumpsWhenWhatIsUnderWayHasGone)
{
    section.depart();
    section.setPosition(200);
    EXPECT_EQ(section.position(), 0u);
    section.advance(8);
    EXPECT_EQ(section.position(), 200u);
}

TEST_F(Section, CompletesASampleBeforeANewEnd)
{
    send(102);
    section.setEnd(100);
    EXPECT_EQ(section.left(), 2u);
    send(2);
    EXPECT_EQ(section.left(), 0u);
}

} // namespace
