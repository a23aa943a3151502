#include "benchmarks/remote/baresource.h"

#include <chrono>
#include <cstring>

void BareSource::put(qint64 content)
{
    const std::lock_guard lock(mutex);
    ++last;
    latest = content;
    changed.notify_all();
}

BARE::Delivery *BareSource::pull(CORBA::ULongLong number)
{
    BARE::Delivery_var delivery = new BARE::Delivery;
    std::unique_lock lock(mutex);
    const bool isThere = changed.wait_for(lock, std::chrono::seconds(2), [&] { return last > number; });
    delivery->number = isThere ? last : 0;
    delivery->content.length(sizeof latest);
    std::memcpy(delivery->content.get_buffer(), &latest, sizeof latest);
    return delivery._retn();
}
