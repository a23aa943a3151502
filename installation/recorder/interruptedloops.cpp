#include "installation/recorder/interruptedloops.h"

#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordingbook.h"
#include "installation/recorder/recordstore.h"

#include <vector>

namespace installation::recorder
{

namespace
{

constexpr std::chrono::minutes startLimit(1); // nobody waits for an answer yet

struct Loop {
    RecordSummary record;
    std::unique_ptr<Activity> activity;
};

void close(StoreThread &store, const RecordSummary &loop, const std::stop_token &cancellation)
{
    try {
        closeLoop(store, loop, cancellation);
    } catch (const RecorderError &error) {
        if (!cancellation.stop_requested())
            store.tell([id = loop.id, reason = error.text()](RecordStore &records) { records.giveUp(id, reason); });
    }
}

} // namespace

InterruptedLoops::InterruptedLoops(const std::shared_ptr<StoreThread> &store, Activities &activities)
    : jobs(QStringLiteral("loops"), 1)
{
    const auto left = store->ask([](RecordStore &records) { return records.interruptedLoops(); }, startLimit);
    if (left.isEmpty())
        return;
    const auto loops = std::make_shared<std::vector<Loop>>();
    for (const RecordSummary &record : left)
        loops->push_back({record, activities.begin(record.id, record.name, KORVE_XML::KORVE_RecordData::INDEXING)});
    jobs.start(jobs.takePlace(), [store, loops](const std::stop_token &cancellation) {
        for (Loop &loop : *loops) {
            close(*store, loop.record, cancellation);
            loop.activity.reset();
        }
    });
}

} // namespace installation::recorder
