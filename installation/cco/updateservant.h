#pragma once

#include "idl/cco.hh"
#include "installation/cco/centralobjectparts.h"

#include <memory>

namespace installation
{

/// Answers the calls of CCO::IF_CCO_c_Update: workstations announce themselves by name. Each announcement makes the
/// background look at everything now instead of at the end of the interval.
class UpdateServant : public POA_CCO::IF_CCO_c_Update
{
public:
    explicit UpdateServant(std::shared_ptr<CentralObjectParts> parts);

    void StartupIndication(const char *arg1) override;
    CORBA::Boolean CheckIndication(const char *arg1) override;
    void ShutdownIndication(const char *arg1) override;
    void CentralServicesIndication(const char *arg1) override;

private:
    const std::shared_ptr<CentralObjectParts> parts;
};

} // namespace installation
