#include "tests/support/objectmodel/objectclass.h"

#include "objectmodel/admin.h"
#include "objectmodel/bitetest.h"
#include "objectmodel/korve_availabledevice.h"
#include "objectmodel/korve_bite.h"
#include "objectmodel/korve_storagestatus.h"
#include "objectmodel/massstoragestatus.h"
#include "objectmodel/systemrecorderdetection.h"

namespace modeltest
{

using namespace KORVE_XML;

std::vector<ObjectClass> deviceClasses()
{
    return {
        describe<KORVE_AvailableDevice>(
            {KORVE_MEMBER(KORVE_AvailableDevice, DeviceType), KORVE_MEMBER(KORVE_AvailableDevice, IPAddress),
             KORVE_MEMBER(KORVE_AvailableDevice, Firmware), KORVE_MEMBER(KORVE_AvailableDevice, LastBroadcast),
             KORVE_MEMBER(KORVE_AvailableDevice, DeviceName), KORVE_MEMBER(KORVE_AvailableDevice, GUID),
             KORVE_MEMBER(KORVE_AvailableDevice, PortNumber), KORVE_MEMBER(KORVE_AvailableDevice, SerialNumber),
             KORVE_MEMBER(KORVE_AvailableDevice, VC410Server)}),
        describe<KORVE_StorageStatus>(
            {KORVE_MEMBER(KORVE_StorageStatus, GUID), KORVE_MEMBER(KORVE_StorageStatus, DeviceId),
             KORVE_MEMBER(KORVE_StorageStatus, DeviceAddress), KORVE_MEMBER(KORVE_StorageStatus, DeviceType),
             KORVE_MEMBER(KORVE_StorageStatus, FirmwareVersion), KORVE_MEMBER(KORVE_StorageStatus, SerialNo),
             KORVE_MEMBER(KORVE_StorageStatus, RecordCount), KORVE_MEMBER(KORVE_StorageStatus, MassStorageStatus)}),
        describe<MassStorageStatus>({KORVE_MEMBER(MassStorageStatus, TotalCapacity),
                                     KORVE_MEMBER(MassStorageStatus, FreeCapacity),
                                     KORVE_MEMBER(MassStorageStatus, FreeCapacityInPercent)}),
        describe<KORVE_Bite>({KORVE_MEMBER(KORVE_Bite, ResultState), KORVE_MEMBER(KORVE_Bite, BiteTest),
                              KORVE_MEMBER(KORVE_Bite, Time)}),
        describe<BiteTest>({KORVE_MEMBER(BiteTest, MessageText), KORVE_MEMBER(BiteTest, Result)}),
        describe<SystemRecorderDetection>(
            {KORVE_MEMBER(SystemRecorderDetection, Timestamp), KORVE_MEMBER(SystemRecorderDetection, Name),
             KORVE_MEMBER(SystemRecorderDetection, SerialNo), KORVE_MEMBER(SystemRecorderDetection, FWVersion),
             KORVE_MEMBER(SystemRecorderDetection, XGMACaddress),
             KORVE_MEMBER(SystemRecorderDetection, NofLanInterfaces), KORVE_MEMBER(SystemRecorderDetection, LanIp)}),
        describe<Admin>({KORVE_MEMBER(Admin, CopySection), KORVE_MEMBER(Admin, RecordAttribute),
                         KORVE_MEMBER(Admin, DataRateUsage), KORVE_MEMBER(Admin, RecordReplayAllModes),
                         KORVE_MEMBER(Admin, ResetMode), KORVE_MEMBER(Admin, RecordReplayMode),
                         KORVE_MEMBER(Admin, ReplayMode), KORVE_MEMBER(Admin, DeviceType),
                         KORVE_MEMBER(Admin, Notification), KORVE_MEMBER(Admin, ResourceStatus),
                         KORVE_MEMBER(Admin, BiteState), KORVE_MEMBER(Admin, BiteCmd), KORVE_MEMBER(Admin, HealthState),
                         KORVE_MEMBER(Admin, SystemRecorderDetection), KORVE_MEMBER(Admin, RequestSpareBandwidth)})};
}

} // namespace modeltest
