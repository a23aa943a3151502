#include "installation/cco/orbaccess.h"

#include <cstring>

namespace installation
{

CORBA::ORB_ptr theOrb()
{
    int noArguments = 0;
    return CORBA::ORB_init(noArguments, nullptr);
}

CORBA::Object_ptr separateReference(CORBA::Object_ptr object)
{
    const CORBA::ORB_var orb = theOrb();
    const CORBA::String_var text = orb->object_to_string(object);
    return orb->string_to_object(text);
}

std::size_t bytesOf(CORBA::Object_ptr object)
{
    const CORBA::ORB_var orb = theOrb();
    const CORBA::String_var text = orb->object_to_string(object);
    return std::strlen(text) / 2; // two digits a byte
}

} // namespace installation
