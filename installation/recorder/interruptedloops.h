#pragma once

#include "installation/recorder/activities.h"
#include "installation/recorder/jobs.h"
#include "installation/recorder/storethread.h"

namespace installation::recorder
{

/// Puts the loops in order that the process before was recording when it ended, one after the other, on a thread of its
/// own. Until then their records are INDEXING. A loop that cannot be put in order is given up.
///
/// Thread: any.
class InterruptedLoops
{
public:
    /// Begins. @p activities must not know of anything that goes on with these records.
    /// @throws RecorderError when the store does not say which there are.
    InterruptedLoops(const std::shared_ptr<StoreThread> &store, Activities &activities);
    /// Ends soon, and waits for that; the next start of the recorder goes on there.
    void stop() { jobs.stop(); }

private:
    Jobs jobs;
};

} // namespace installation::recorder
