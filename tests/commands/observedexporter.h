#pragma once

#include "tests/connectionmanagement/fakeexporter.h"

#include <condition_variable>
#include <map>
#include <mutex>

/// An exporter that takes nothing, counts who asks it to export, and can keep the manager waiting.  Thread: any.
class ObservedExporter : public FakeExporter
{
public:
    /// The exports from now on have that id, and their managers wait as @p isHeld says for the list to be taken.
    void begin(const std::string &nextId, bool isHeld);
    /// Nobody has to wait any more.
    void release();
    /// How often a manager has taken up the export of that id.
    int ordersOf(const std::string &ofId);
    /// Waits, bounded, until a manager is kept waiting.
    bool isWaitedFor();

    char *exportID() override;
    char *deviceID() override;
    void exportFileList(const TQ_KRV::seqString &) override;

private:
    std::mutex mutex; // guards the rest, and `id`
    std::condition_variable changed;
    std::map<std::string, int> orders;
    bool holds = false;
    bool waits = false;
};
