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
        : parts(makeParts(std::move(configuration))), naming(poa, "CCO", new NamingServant(parts, poa)),
          update(poa, "CCOUpdate", new UpdateServant(parts))
    {
    }

    const std::shared_ptr<CentralObjectParts> parts;
    const Activation naming;
    const Activation update;
};

CentralObjectService::CentralObjectService(CentralObjectConfiguration configuration, PortableServer::POA_ptr poa)
    : d(std::make_unique<Private>(std::move(configuration), poa))
{
    d->parts->start();
}

CentralObjectService::~CentralObjectService()
{
    d->parts->stop();
}

CORBA::Object_ptr CentralObjectService::reference() const
{
    return d->naming.reference();
}

} // namespace installation
