#include "tests/faults/client.h"
#include "tests/faults/faultyinstallation.h"

namespace
{

/// A change of a record, and how often it shows in the recorder.
struct Change {
    const char *command;
    const char *managersOperation;
    const char *recordersOperation;
    std::size_t (*traces)(TQ_KORVE::IF_Control_ptr recorder, const char *recordId);
};

std::size_t records(TQ_KORVE::IF_Control_ptr recorder, const char *)
{
    return TQ_KORVE::seqMETA_DATA_var(recorder->listAllRecords())->length();
}

const Change changes[] = {
    {"addHistory", "addHistory", "addHistory",
     [](TQ_KORVE::IF_Control_ptr recorder, const char *id) -> std::size_t {
         return TQ_KORVE::seqHistory_var(recorder->getHistory(id))->length();
     }},
    {"SaveBookmarksToKorve", "addBookmarks", "addBookmarks",
     [](TQ_KORVE::IF_Control_ptr recorder, const char *id) -> std::size_t {
         return TQ_KORVE::seqBookmarks_var(recorder->getBookmarks(id))->length();
     }},
    {"SetRecordDeletableFlag", "setRecordDeletableFlag", "setDeletableFlagOfRecord",
     [](TQ_KORVE::IF_Control_ptr recorder, const char *id) -> std::size_t {
         return TQ_KORVE::struMETA_DATA_var(recorder->getMetaData(id))->deletable;
     }},
    {"SetRecordComment", "setRecordComment", "setRecordComment",
     [](TQ_KORVE::IF_Control_ptr recorder, const char *id) -> std::size_t {
         const TQ_KORVE::struMETA_DATA_var data = recorder->getMetaData(id);
         return data->recordName.length() == 5; // "words", where it was "a"
     }},
    {"copyRecord", "copyRecord", "copyRecord", records},
};

/// Who dies when.
struct Moment {
    const char *name;
    const char *role;
    const char *when;
    bool isDone; ///< the change, and nobody could say so
};

constexpr Moment moments[] = {
    {"ManagerBefore", "manager", "before", false},
    {"ManagerAfter", "manager", "after", true},
    {"RecorderBefore", "recorder", "before", false},
    {"RecorderAfter", "recorder", "after", true},
};

void PrintTo(const Change &change, std::ostream *out)
{
    *out << change.command;
}

void PrintTo(const Moment &moment, std::ostream *out)
{
    *out << moment.name;
}

using Row = std::tuple<Change, Moment>;

class KillMoments : public FaultyInstallation, public testing::WithParamInterface<Row>
{
protected:
    const Change change = std::get<Change>(GetParam());
    const Moment moment = std::get<Moment>(GetParam());

    bool isOfManager() const { return moment.role == std::string("manager"); }
    QByteArray script() const
    {
        return QStringLiteral("on %1 %2 kill %3\n")
            .arg(QLatin1String(moment.role),
                 QLatin1String(isOfManager() ? change.managersOperation : change.recordersOperation),
                 QLatin1String(moment.when))
            .toUtf8();
    }
    /// Waits, bounded, for a recorder that tells.
    std::size_t traces(const std::string &recordId)
    {
        std::size_t count = 0;
        const auto ask = [&] {
            try {
                const TQ_KORVE::IF_Control_var control = recorder();
                count = change.traces(control, recordId.c_str());
                return true;
            } catch (const CORBA::SystemException &) { // the one that was killed is registered still
                return false;
            }
        };
        EXPECT_TRUE(comesTrue(ask));
        return count;
    }
};

} // namespace

TEST_P(KillMoments, LeaveAChangeDoneOnceOrNotAtAll)
{
    start(script());
    const std::string recordId = importRecord();
    const std::size_t before = traces(recordId);
    Client client(address(), recordId);
    EXPECT_NE(client.run(change.command), "0");
    EXPECT_TRUE(comesTrue([&] { return !process(moment.role).isRunning(); }));
    setScript("");
    startAgain(moment.role);
    EXPECT_EQ(traces(recordId), before + (moment.isDone ? 1 : 0));
    EXPECT_TRUE(client.outcomeIsUnknown());
}

INSTANTIATE_TEST_SUITE_P(Changes, KillMoments,
                         testing::Combine(testing::ValuesIn(changes), testing::ValuesIn(moments)),
                         [](const auto &info) {
                             return std::string(std::get<Change>(info.param).command) +
                                    std::get<Moment>(info.param).name;
                         });
