#include "installation/cco/orbaccess.h"

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

} // namespace installation
