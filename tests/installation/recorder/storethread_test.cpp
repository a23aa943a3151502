#include "installation/recorder/recordererror.h"
#include "installation/recorder/storethread.h"
#include "tests/installation/recorder/refusal.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

using namespace installation::recorder;
using namespace std::chrono_literals;

namespace
{

/// Holds the store thread during its life.
class Occupied
{
public:
    explicit Occupied(StoreThread &thread)
    {
        const std::shared_future<void> gate = end.get_future().share();
        while (!begun) {
            try {
                thread.ask([this, gate = gate](RecordStore &) {
                    begun = true;
                    gate.wait();
                });
            } catch (const RecorderError &) { // it was withdrawn, or we no longer wait for it
            }
        }
    }
    ~Occupied() { end.set_value(); }

private:
    std::atomic<bool> begun = false;
    std::promise<void> end;
};

class Thread : public testing::Test
{
protected:
    QTemporaryDir directory;
};

TEST_F(Thread, AnswersWithWhatTheWorkReturns)
{
    StoreThread thread(directory.path());
    const QString id = thread.ask([](RecordStore &store) { return storeRecord(store, "one", "abcd"); });
    EXPECT_EQ(thread.ask([id](RecordStore &store) { return store.record(id).name; }), "one");
}

TEST_F(Thread, PassesOnWhatTheWorkThrows)
{
    StoreThread thread(directory.path());
    EXPECT_THROW(thread.ask([](RecordStore &store) { return store.record("R0").name; }), RecorderError);
    EXPECT_EQ(thread.ask([](RecordStore &store) { return store.records().size(); }), 0);
}

TEST_F(Thread, RefusesWhatComesAfterItsEnd)
{
    StoreThread thread(directory.path());
    thread.stop();
    EXPECT_EQ(kindOf([&] { thread.ask([](RecordStore &store) { return store.records().size(); }); }),
              TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
}

TEST_F(Thread, CannotStartInAFolderThatIsAFile)
{
    writeFile(directory.filePath("file"), "");
    EXPECT_THROW(StoreThread(directory.filePath("file")), RecorderError);
}

TEST_F(Thread, DoesNotDoLaterWhatNobodyWaitsFor)
{
    {
        StoreThread thread(directory.path(), 20ms);
        const Occupied occupied(thread);
        try {
            thread.ask([](RecordStore &store) { return storeRecord(store, "late", "abcd"); });
            FAIL() << "it was answered";
        } catch (const RecorderError &error) {
            EXPECT_EQ(error.kind(), TQ_KORVE::ekMASS_STORAGE_TOO_SLOW);
            EXPECT_TRUE(error.text().contains("nothing was done")) << error.what();
            EXPECT_FALSE(error.isOutcomeUnknown());
        }
    }
    EXPECT_TRUE(RecordStore(directory.path()).records().isEmpty());
}

TEST_F(Thread, DoesForWhoHasMoreTimeWhatOthersNoLongerWaitFor)
{
    StoreThread thread(directory.path(), 20ms);
    std::future<QString> patient;
    {
        const Occupied occupied(thread);
        patient = std::async(std::launch::async, [&] {
            return thread.ask([](RecordStore &store) { return storeRecord(store, "late", "abcd"); }, 10min);
        });
        for (int others = 0; others < 5; ++others)
            EXPECT_THROW(thread.ask([](RecordStore &) {}), RecorderError);
    }
    EXPECT_NE(patient.get(), "");
}

TEST_F(Thread, SaysThatTheWorkMayStillBeDone)
{
    std::promise<void> gate;
    StoreThread thread(directory.path(), 200ms); // ends before the gate does
    try {
        thread.ask([future = gate.get_future().share()](RecordStore &) { future.wait(); });
        ADD_FAILURE() << "it was answered";
    } catch (const RecorderError &error) {
        EXPECT_TRUE(error.text().contains("may still be done")) << error.what();
        EXPECT_TRUE(error.isOutcomeUnknown());
    }
    gate.set_value();
}

TEST_F(Thread, RefusesMoreThanCanWait)
{
    StoreThread thread(directory.path(), 1ms);
    const Occupied occupied(thread);
    const auto kind = [&] {
        try {
            thread.ask([](RecordStore &) {});
        } catch (const RecorderError &error) {
            return error.kind();
        }
        return TQ_KORVE::ekIMPLEMENTATION_FAULT;
    };
    for (std::size_t i = 0; i < StoreThread::maximumWaiting; ++i)
        EXPECT_EQ(kind(), TQ_KORVE::ekMASS_STORAGE_TOO_SLOW);
    EXPECT_EQ(kind(), TQ_KORVE::ekRESSOURCES_EXHAUSTED);
}

} // namespace
