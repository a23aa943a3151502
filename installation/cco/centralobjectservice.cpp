#include "installation/cco/centralobjectservice.h"

#include "installation/cco/namingservant.h"
#include "installation/cco/orbaccess.h"
#include "installation/cco/updateservant.h"

#include "orbconnection/incomingconnections.h"

namespace installation
{

namespace
{

std::shared_ptr<CentralObjectParts> makeParts(CentralObjectConfiguration &&configuration)
{
    CorbaCommon::watchIncomingConnections();
    const CORBA::ORB_var orb = theOrb();
    return std::make_shared<CentralObjectParts>(orb, std::move(configuration));
}

} // namespace

class CentralObjectService::Private
{
public:
    Private(CentralObjectConfiguration &&configuration, PortableServer::POA_ptr poa)
        : parts(makeParts(std::move(configuration))), objects(poa),
          naming(objects.serve<NamingServant>("CCO", parts, objects)),
          update(objects.serve<UpdateServant>("CCOUpdate", parts))
    {
    }

    const std::shared_ptr<CentralObjectParts> parts;
    const ServedObjects objects;
    const std::shared_ptr<Activation> naming;
    const std::shared_ptr<Activation> update;
};

CentralObjectService::CentralObjectService(CentralObjectConfiguration configuration, PortableServer::POA_ptr poa)
    : d(std::make_unique<Private>(std::move(configuration), poa))
{
    d->parts->start();
}

CentralObjectService::~CentralObjectService()
{
    stop();
}

void CentralObjectService::stop()
{
    d->objects.refuseCalls();
    d->objects.waitForCalls();
    d->parts->stop();
}

CORBA::Object_ptr CentralObjectService::reference() const
{
    return d->naming->reference();
}

} // namespace installation
