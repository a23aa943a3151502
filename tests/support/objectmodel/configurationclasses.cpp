#include "tests/support/objectmodel/objectclass.h"

#include "objectmodel/dataformatlimit.h"
#include "objectmodel/discspaceusagelimit.h"
#include "objectmodel/forceddeletion.h"
#include "objectmodel/korve_cfg.h"
#include "objectmodel/korve_cfgautodeletion.h"
#include "objectmodel/korve_cfgdevice.h"
#include "objectmodel/pelinconnection.h"
#include "objectmodel/recordcountlimit.h"
#include "objectmodel/su_configuration.h"
#include "objectmodel/su_device.h"
#include "objectmodel/su_devicemetadata.h"

namespace modeltest
{

using namespace KORVE_XML;

std::vector<ObjectClass> configurationClasses()
{
    return {
        describe<KORVE_Cfg>({KORVE_MEMBER(KORVE_Cfg, KORVE_CfgDevice), KORVE_MEMBER(KORVE_Cfg, KORVE_CfgAutoDeletion)}),
        describe<KORVE_CfgDevice>({KORVE_MEMBER(KORVE_CfgDevice, Name), KORVE_MEMBER(KORVE_CfgDevice, IPAddress),
                                   KORVE_MEMBER(KORVE_CfgDevice, InterfaceType), KORVE_MEMBER(KORVE_CfgDevice, Port),
                                   KORVE_MEMBER(KORVE_CfgDevice, PortFixed),
                                   KORVE_MEMBER(KORVE_CfgDevice, InterfaceFixed), KORVE_MEMBER(KORVE_CfgDevice, GUID),
                                   KORVE_MEMBER(KORVE_CfgDevice, SkipAutoDeletion),
                                   KORVE_MEMBER(KORVE_CfgDevice, PelinResync)}),
        describe<KORVE_CfgAutoDeletion>(
            {KORVE_MEMBER(KORVE_CfgAutoDeletion, Enabled), KORVE_MEMBER(KORVE_CfgAutoDeletion, Intervall),
             KORVE_MEMBER(KORVE_CfgAutoDeletion, ExpirationTime), KORVE_MEMBER(KORVE_CfgAutoDeletion, CheckPELIN),
             KORVE_MEMBER(KORVE_CfgAutoDeletion, RecordCountLimit),
             KORVE_MEMBER(KORVE_CfgAutoDeletion, DiscSpaceUsageLimit),
             KORVE_MEMBER(KORVE_CfgAutoDeletion, DataFormatLimit),
             KORVE_MEMBER(KORVE_CfgAutoDeletion, ForcedDeletion)}),
        describe<RecordCountLimit>(
            {KORVE_MEMBER(RecordCountLimit, UpperLimit), KORVE_MEMBER(RecordCountLimit, LowerLimit)}),
        describe<DiscSpaceUsageLimit>(
            {KORVE_MEMBER(DiscSpaceUsageLimit, UpperLimit), KORVE_MEMBER(DiscSpaceUsageLimit, LowerLimit)}),
        describe<DataFormatLimit>(
            {KORVE_MEMBER(DataFormatLimit, ExpirationTime), KORVE_MEMBER(DataFormatLimit, DataFormat)}),
        describe<ForcedDeletion>({KORVE_MEMBER(ForcedDeletion, ProcessingState)}),
        describe<SU_Configuration>(
            {KORVE_MEMBER(SU_Configuration, SU_Device), KORVE_MEMBER(SU_Configuration, PelinConnection)}),
        describe<SU_Device>({KORVE_MEMBER(SU_Device, GUID), KORVE_MEMBER(SU_Device, Name),
                             KORVE_MEMBER(SU_Device, Address), KORVE_MEMBER(SU_Device, DisplayName)}),
        describe<SU_DeviceMetaData>(
            {KORVE_MEMBER(SU_DeviceMetaData, SU_Device), KORVE_MEMBER(SU_DeviceMetaData, MassStorageStatus),
             KORVE_MEMBER(SU_DeviceMetaData, Firmware), KORVE_MEMBER(SU_DeviceMetaData, SerialNumber)}),
        describe<PelinConnection>({KORVE_MEMBER(PelinConnection, Host), KORVE_MEMBER(PelinConnection, Port)})};
}

} // namespace modeltest
