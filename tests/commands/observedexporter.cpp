#include "tests/commands/observedexporter.h"

#include <chrono>

namespace
{
constexpr std::chrono::seconds patience{30};
}

void ObservedExporter::begin(const std::string &nextId, bool isHeld)
{
    const std::scoped_lock lock(mutex);
    id = nextId;
    holds = isHeld;
    waits = false;
}

void ObservedExporter::release()
{
    const std::scoped_lock lock(mutex);
    holds = false;
    changed.notify_all();
}

int ObservedExporter::ordersOf(const std::string &ofId)
{
    const std::scoped_lock lock(mutex);
    const auto found = orders.find(ofId);
    return found == orders.end() ? 0 : found->second;
}

bool ObservedExporter::isWaitedFor()
{
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, patience, [this] { return waits; });
}

char *ObservedExporter::exportID()
{
    const std::scoped_lock lock(mutex);
    return CORBA::string_dup(id.c_str());
}

/// Only a manager asks for it, once for each export.
char *ObservedExporter::deviceID()
{
    const std::scoped_lock lock(mutex);
    ++orders[id];
    return CORBA::string_dup("");
}

void ObservedExporter::exportFileList(const TQ_KRV::seqString &)
{
    std::unique_lock lock(mutex);
    waits = holds;
    changed.notify_all();
    changed.wait_for(lock, patience, [this] { return !holds; });
}
