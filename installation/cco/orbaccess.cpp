#include "installation/cco/orbaccess.h"

namespace installation
{

CORBA::ORB_ptr theOrb()
{
    int noArguments = 0;
    return CORBA::ORB_init(noArguments, nullptr);
}

CORBA::Object_ptr withCallLimit(CORBA::Object_ptr object, std::chrono::milliseconds limit)
{
    const CORBA::ORB_var orb = theOrb();
    const CORBA::String_var text = orb->object_to_string(object);
    CORBA::Object_var copy = orb->string_to_object(text);
    omniORB::setClientCallTimeout(copy, static_cast<CORBA::ULong>(limit.count()));
    return copy._retn();
}

} // namespace installation
