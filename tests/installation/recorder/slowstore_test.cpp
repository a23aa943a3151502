#include "installation/recorder/controlservant.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

#include <future>
#include <utility>

using namespace installation::recorder;
using namespace std::chrono_literals;

namespace
{

struct Change {
    const char *name;
    std::function<void(ControlServant &, const char *recordId)> make;
};

void PrintTo(const Change &change, std::ostream *out)
{
    *out << change.name;
}

/// A recorder whose store stands still as soon as it has changed something.
class SlowStore : public testing::Test
{
protected:
    SlowStore()
    {
        for (bool isObserved = false; !isObserved;) {
            try {
                store->ask([gate = gate.get_future().share()](RecordStore &records) {
                    records.observe([gate](RecordStore::Event, const QString &, const QString &) { gate.wait(); });
                });
                isObserved = true;
            } catch (const RecorderError &) { // a slow machine
                gate = {};
            }
        }
    }
    ~SlowStore() override
    {
        goOn();
        operations->stop();
    }
    /// From here on the store does not stand still any more.
    void goOn()
    {
        if (!std::exchange(isOpen, true))
            gate.set_value();
    }
    /// Once the store has begun; until then it says that nothing was done, on a slow machine.
    template <typename Call> CORBA::CompletionStatus completionOf(Call call)
    {
        for (;;) {
            try {
                call();
                throw std::logic_error("nothing was raised");
            } catch (const CORBA::TIMEOUT &failure) {
                return failure.completed();
            } catch (const TQ_KORVE::exKorve &refusal) {
                if (refusal.kind != TQ_KORVE::ekMASS_STORAGE_TOO_SLOW || !QByteArray(refusal.text).contains("nothing"))
                    throw;
            }
        }
    }

    QTemporaryDir directory;
    const QByteArray record = [this] {
        RecordStore records(directory.path());
        return storeRecord(records, "air", "abcd").toUtf8();
    }();
    std::promise<void> gate;
    bool isOpen = false;
    const std::shared_ptr<StoreThread> store = std::make_shared<StoreThread>(directory.path(), 50ms);
    const std::shared_ptr<DeviceClock> clock = std::make_shared<DeviceClock>(directory.filePath("clock"));
    const std::shared_ptr<Notifier> notifier = std::make_shared<Notifier>([] { return quint64(1); });
    const std::shared_ptr<Activities> activities = std::make_shared<Activities>();
    const std::shared_ptr<DeviceOperations> operations =
        std::make_shared<DeviceOperations>(store, clock, activities, notifier);
    const std::shared_ptr<Sessions> sessions = std::make_shared<Sessions>(
        Sessions::Surroundings{installation::ServedObjects(PortableServer::POA::_nil()), store, activities, notifier,
                               [] { return quint64(1); }});
    ControlServant control{store, operations, sessions, "1"};
};

TEST_F(SlowStore, TellsNothingOfWhatIsRead)
{
    completionOf([&] { control.setDeletableFlagOfRecord(record.constData()); });
    try {
        const TQ_KORVE::seqHistory_var history = control.getHistory(record.constData());
        ADD_FAILURE() << "it was answered";
    } catch (const TQ_KORVE::exKorve &refusal) {
        EXPECT_EQ(refusal.kind, TQ_KORVE::ekMASS_STORAGE_TOO_SLOW);
    }
}

TEST_F(SlowStore, LeavesNoRecordOfARecordingThatItMakesTooLate)
{
    for (bool isBegun = false; !isBegun;) {
        try {
            sessions->record({}, TQ_KORVE_IT::IF_Korve_IT::_nil(), {});
            FAIL() << "it was answered";
        } catch (const RecorderError &refusal) {
            EXPECT_EQ(refusal.kind(), TQ_KORVE::ekMASS_STORAGE_TOO_SLOW);
            isBegun = refusal.isOutcomeUnknown();
        }
    }
    goOn();
    const auto records = store->ask([](RecordStore &records) { return records.records(); }, 1min);
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records.first().id.toUtf8(), record);
    EXPECT_EQ(contentOf(directory.filePath("recordings")).size(), 2);
    activities->requireNone(QString::fromUtf8(record));
}

class ChangeAtASlowStore : public SlowStore, public testing::WithParamInterface<Change>
{
};

TEST_P(ChangeAtASlowStore, MayStillBeMade)
{
    EXPECT_EQ(completionOf([&] { GetParam().make(control, record.constData()); }), CORBA::COMPLETED_MAYBE);
}

INSTANTIATE_TEST_SUITE_P(
    Changes, ChangeAtASlowStore,
    testing::Values(Change{"Name", [](ControlServant &control, const char *id) { control.setRecordComment(id, {}); }},
                    Change{"Flag",
                           [](ControlServant &control, const char *id) { control.setDeletableFlagOfRecord(id); }},
                    Change{"Bookmark", [](ControlServant &control, const char *id) { control.addBookmark(id, 7, {}); }},
                    Change{"Removal", [](ControlServant &control, const char *id) { control.removeRecord(id); }},
                    Change{"Copy",
                           [](ControlServant &control, const char *id) {
                               TQ_KORVE::seqFILE_PART whole;
                               whole.length(1);
                               whole[0] = {0, 4};
                               CORBA::String_var(control.copyRecord(id, whole, {}));
                           }}),
    [](const auto &info) { return std::string(info.param.name); });

} // namespace
