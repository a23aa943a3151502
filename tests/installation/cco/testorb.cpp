#include "tests/installation/cco/testorb.h"

#include <omniORB4/IIOP.h>
#include <omniORB4/IOP_C.h>
#include <omniORB4/omniIOR.h>

namespace
{

CORBA::ORB_ptr makeOrb()
{
    const char *options[][2] = {{"endPoint", "giop:tcp:127.0.0.1:"},
                                {"throwTransientOnTimeOut", "1"},
                                {"clientCallTimeOutPeriod", "10000"},
                                {"traceTime", "0"},
                                {nullptr, nullptr}};
    int noArguments = 0;
    return CORBA::ORB_init(noArguments, nullptr, "omniORB4", options);
}

PortableServer::POA_ptr poaNamed(CORBA::ORB_ptr orb, const char *name)
{
    const CORBA::Object_var object = orb->resolve_initial_references(name);
    return PortableServer::POA::_narrow(object);
}

/// The system has chosen the port; only a reference tells which.
std::uint16_t portIn(CORBA::Object_ptr object)
{
    const omniIOR_var ior = object->_PR_getobj()->_getIOR();
    const IOP::TaggedProfileList &profiles = ior->iopProfiles();
    IIOP::ProfileBody body;
    IIOP::unmarshalProfile(profiles[0], body);
    return body.address.port;
}

} // namespace

TestOrb &TestOrb::instance()
{
    static TestOrb orb;
    return orb;
}

TestOrb::TestOrb() : theOrb(makeOrb()), root(poaNamed(theOrb, "RootPOA")), keyed(poaNamed(theOrb, "omniINSPOA"))
{
    PortableServer::POAManager_var(root->the_POAManager())->activate();
    PortableServer::POAManager_var(keyed->the_POAManager())->activate();
    const CORBA::Object_var any = root->create_reference("IDL:omg.org/CORBA/Object:1.0");
    endpointPort = portIn(any);
}

TestOrb::~TestOrb()
{
    theOrb->destroy();
}
