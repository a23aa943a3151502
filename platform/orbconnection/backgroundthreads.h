#pragma once

#include <functional>

namespace CorbaCommon
{
/// Runs @p work on a thread of its own, which nobody waits for until the ORB ends: it must end by itself soon after
/// whoever began it wants that.
void runInBackground(std::function<void()> work);

/// Waits for all. Called by the ORB's end.
void joinBackgroundThreads();
} // namespace CorbaCommon
