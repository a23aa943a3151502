#pragma once

#include <functional>

namespace CorbaCommon
{
/// Runs @p work on a thread of its own, which nobody waits for until the ORB ends: it must end by itself soon after
/// whoever began it wants that.
void runInBackground(std::function<void()> work);

/// The ORB is about to end: all such work has to, also if whoever began it has not said so.
bool isBackgroundEnding();

/// Ends the time of background threads and waits for all. Called by the ORB's end.
void joinBackgroundThreads();
} // namespace CorbaCommon
