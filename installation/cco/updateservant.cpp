#include "installation/cco/updateservant.h"

#include "orbconnection/incomingconnections.h"

namespace installation
{

UpdateServant::UpdateServant(std::shared_ptr<CentralObjectParts> parts) : parts(std::move(parts)) {}

void UpdateServant::StartupIndication(const char *arg1)
{
    parts->indications.add(arg1, CorbaCommon::callerAddress());
    parts->prober.hurry();
}

CORBA::Boolean UpdateServant::CheckIndication(const char *arg1)
{
    return parts->indications.contains(arg1);
}

void UpdateServant::ShutdownIndication(const char *arg1)
{
    parts->indications.remove(arg1);
    parts->prober.hurry();
}

void UpdateServant::CentralServicesIndication(const char *)
{
    parts->prober.hurry();
}

} // namespace installation
