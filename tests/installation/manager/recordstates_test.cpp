#include "installation/manager/recordstates.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <optional>

using namespace installation;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

RecordState state(const char *record, TQ_KRV::eRECORD_STATUS status, const char *device = "D")
{
    return {QLatin1String(device), QLatin1String(record), QLatin1String(record), status};
}

class States : public testing::Test
{
protected:
    States() { start(); }

    void start()
    {
        states.reset();
        states.emplace(folder.path(), [this](const RecordState &now) {
            told.push_back(now.device.toStdString() + " " + now.record.toStdString() + " " +
                           std::to_string(now.status));
        });
    }
    std::vector<std::string> toldNow() { return std::exchange(told, {}); }

    QTemporaryDir folder;
    std::vector<std::string> told;
    std::optional<RecordStates> states;
};

} // namespace

TEST_F(States, TellsEachChangeOnce)
{
    states->changed(state("R", TQ_KRV::rsRECORDING));
    states->changed(state("R", TQ_KRV::rsRECORDING));
    states->changed(state("R", TQ_KRV::rsIDLE));
    states->changed(state("R", TQ_KRV::rsIDLE));
    EXPECT_THAT(told, ElementsAre("D R 3", "D R 5"));
}

TEST_F(States, TakesARecordThatNobodyHasToldOfAsIdle)
{
    states->changed(state("R", TQ_KRV::rsIDLE));
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(States, TellsWhatAListShowsToBeDifferent)
{
    states->changed(state("A", TQ_KRV::rsREPLAYING));
    states->changed(state("B", TQ_KRV::rsREPLAYING));
    states->changed(state("C", TQ_KRV::rsREPLAYING, "other"));
    toldNow();
    states->compare(QStringLiteral("D"), {state("B", TQ_KRV::rsREADY_FOR_REPLAY), state("N", TQ_KRV::rsRECORDING)},
                    states->now());
    EXPECT_THAT(toldNow(), ElementsAre("D B 0", "D N 3", "D A 5"));
}

TEST_F(States, BelievesANotificationThatCameAfterTheListWasAskedFor)
{
    const RecordStates::Moment asked = states->now();
    states->changed(state("A", TQ_KRV::rsRECORDING));
    states->changed(state("B", TQ_KRV::rsRECORDING));
    states->changed(state("B", TQ_KRV::rsIDLE));
    toldNow();
    states->compare(QStringLiteral("D"), {state("B", TQ_KRV::rsRECORDING)}, asked);
    EXPECT_THAT(toldNow(), IsEmpty());
    states->compare(QStringLiteral("D"), {}, states->now());
    EXPECT_THAT(toldNow(), ElementsAre("D A 5"));
}

TEST_F(States, BelievesAListThatWasAskedForAfterTheNotification)
{
    states->changed(state("A", TQ_KRV::rsRECORDING));
    const RecordStates::Moment asked = states->now();
    toldNow();
    states->compare(QStringLiteral("D"), {}, asked);
    EXPECT_THAT(toldNow(), ElementsAre("D A 5"));
}

TEST_F(States, KeepsOnlyRecordsThatAreBusy)
{
    states->changed(state("A", TQ_KRV::rsRECORDING));
    states->changed(state("B", TQ_KRV::rsREPLAYING));
    states->changed(state("A", TQ_KRV::rsIDLE));
    const QVector<RecordState> kept = BusyRecords(folder.path()).load();
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(kept.first().record, QStringLiteral("B"));
}

TEST_F(States, ComparesWithWhatItKnewBeforeARestart)
{
    states->changed(state("A", TQ_KRV::rsRECORDING));
    states->changed(state("B", TQ_KRV::rsREPLAYING));
    states->changed(state("C", TQ_KRV::rsREPLAYING));
    states->changed(state("C", TQ_KRV::rsIDLE));
    toldNow();
    start();
    states->compare(QStringLiteral("D"), {state("B", TQ_KRV::rsREPLAYING)}, states->now());
    EXPECT_THAT(toldNow(), ElementsAre("D A 5"));
}

TEST_F(States, BeginAnewWithAFileThatIsNotOurs)
{
    states.reset();
    QFile file(folder.filePath(QStringLiteral("busyrecords.sqlite")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("no data base") > 0);
    file.close();
    start();
    states->changed(state("A", TQ_KRV::rsRECORDING));
    EXPECT_THAT(told, ElementsAre("D A 3"));
    EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("busyrecords.sqlite.refused"))));
}
