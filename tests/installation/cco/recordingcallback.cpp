#include "tests/installation/cco/recordingcallback.h"

#include "tests/installation/cco/testorb.h"

RecordingCallback *RecordingCallback::make()
{
    TestOrb::instance();
    return new RecordingCallback;
}

void RecordingCallback::notify(CORBA::ULong event, const char *name)
{
    std::unique_lock lock(mutex);
    events.push_back({event, name});
    const CCO::CBRegistration_var ended = registrationToEnd._retn();
    released.wait(lock, [this] { return !blocked; });
    lock.unlock();
    if (!CORBA::is_nil(ended))
        ended->unregister();
}

std::vector<ToldEvent> RecordingCallback::told() const
{
    const std::scoped_lock lock(mutex);
    return events;
}

void RecordingCallback::block()
{
    const std::scoped_lock lock(mutex);
    blocked = true;
}

void RecordingCallback::release()
{
    const std::scoped_lock lock(mutex);
    blocked = false;
    released.notify_all();
}

void RecordingCallback::unregisterWhenTold(CCO::CBRegistration_ptr registration)
{
    const std::scoped_lock lock(mutex);
    registrationToEnd = CCO::CBRegistration::_duplicate(registration);
}

void RecordingCallback::retire()
{
    const PortableServer::POA_var poa = _default_POA();
    const PortableServer::ObjectId_var id = poa->servant_to_id(this);
    poa->deactivate_object(id);
}
