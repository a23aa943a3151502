#include "tests/installation/recorder/sessionfixture.h"

using namespace TQ_KORVE;

namespace
{

const auto nobody = TQ_KORVE_IT::IF_Korve_IT::_nil();

/// A recorder with seventeen records.
class SessionLimits : public SessionTest
{
protected:
    SessionLimits()
    {
        QStringList files;
        for (int i = 0; i < 17; ++i) {
            files.append(directory.filePath(QStringLiteral("%1.wav").arg(i)));
            writeFile(files.last(), WavFile{}.bytes());
        }
        serve(files);
        records = control->listAllRecords();
    }
    CORBA::ULong replay(CORBA::ULong number)
    {
        return IF_ReplaySession_var(control->getReplaySessionById(records[number].recordID, nobody))->getDatarateClass();
    }
    struSessionLimits free() { return seqDataRateClasses_var(control->getAvailableDataRateClasses())[3].limits; }

    seqMETA_DATA_var records;
};

TEST_F(SessionLimits, AreSixteenReplays)
{
    EXPECT_EQ(free().replaySessions, 16u);
    for (CORBA::ULong i = 0; i < 16; ++i)
        replay(i);
    EXPECT_EQ(free().replaySessions, 0u);
    EXPECT_EQ(free().recordingSessions, 16u);
    EXPECT_EQ(kindOf([&] { replay(16); }), ekRESSOURCES_EXHAUSTED);
    replay(0); // that one is there already
    control->setRecordIdle(records[1u].recordID);
    replay(16);
}

TEST_F(SessionLimits, AreTheSameForEachClass)
{
    replay(0);
    for (seqDataRateClasses *classes : {control->getAvailableDataRateClasses(), control->getAvailableDataRateClassesEx(),
                                        control->getAvailableDataRateClassesEx2(), control->getAvailableDataRateClassesEx3()}) {
        seqDataRateClasses_var owned = classes;
        ASSERT_EQ(owned->length(), 13u);
        for (CORBA::ULong i = 0; i < 13; ++i) {
            EXPECT_EQ(owned[i].dataRate, i);
            EXPECT_EQ(owned[i].limits.replaySessions, 15u);
        }
    }
}

TEST_F(SessionLimits, TellWhichClassesAreOccupied)
{
    EXPECT_EQ(seqOccupiedDataRateClasses_var(control->getOccupiedDataRateClasses())->length(), 0u);
    replay(0);
    replay(1);
    const IF_ReplaySession_var wide = control->getReplaySessionByIdEx(records[2u].recordID, nobody, drVUHF_40M);
    EXPECT_EQ(wide->getDatarateClass(), drVUHF_40M);
    for (seqOccupiedDataRateClasses *classes : {control->getOccupiedDataRateClasses(), control->getOccupiedDataRateClassesEx(),
                                                control->getOccupiedDataRateClassesEx2(), control->getOccupiedDataRateClassesEx3()}) {
        seqOccupiedDataRateClasses_var owned = classes;
        ASSERT_EQ(owned->length(), 2u);
        EXPECT_EQ(owned[0].dataRate, CORBA::ULong(drVUHF_40M));
        EXPECT_EQ(owned[0].sessionCount, 1u);
        EXPECT_EQ(owned[1].dataRate, CORBA::ULong(drVUHF_300k));
        EXPECT_EQ(owned[1].sessionCount, 2u);
    }
}

TEST_F(SessionLimits, ActiveSessionsAreListed)
{
    EXPECT_EQ(seqMETA_DATA_var(control->getActiveSessions())->length(), 0u);
    replay(3);
    for (seqMETA_DATA *sessions : {control->getActiveSessions(), control->getActiveSessionsEx3()}) {
        seqMETA_DATA_var owned = sessions;
        ASSERT_EQ(owned->length(), 1u);
        EXPECT_STREQ(owned[0].recordID, records[3u].recordID);
        EXPECT_EQ(owned[0].recordStatus, CORBA::ULong(rsREADY_FOR_REPLAY));
    }
}

} // namespace
