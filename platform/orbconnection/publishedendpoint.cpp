#include "orbconnection/publishedendpoint.h"

#include <omniORB4/IIOP.h>
#include <omniORB4/IOP_C.h>
#include <omniORB4/omniIOR.h>

namespace CorbaCommon
{
Endpoint publishedEndpoint(CORBA::Object_ptr object)
{
    const omniIOR_var ior = object->_PR_getobj()->_getIOR();
    const IOP::TaggedProfileList &profiles = ior->iopProfiles();
    for (CORBA::ULong position = 0; position < profiles.length(); ++position) {
        if (profiles[position].tag != IOP::TAG_INTERNET_IOP)
            continue;
        IIOP::ProfileBody body;
        IIOP::unmarshalProfile(profiles[position], body);
        return {QString::fromLatin1(body.address.host), body.address.port};
    }
    return {};
}
} // namespace CorbaCommon
