#include "installation/manager/storagestatus.h"

#include "objectmodel/korve_storagestatus.h"

#include <QUuid>

namespace installation
{

namespace
{

const QUuid deviceNamespace(0x5f0d3c1e, 0x8a47, 0x4b52, 0x9d, 0x6e, 0x2c, 0x71, 0xe4, 0x08, 0xb3, 0x95);

KORVE_XML::MassStorageStatus massStorageOf(const DeviceStatus &status)
{
    KORVE_XML::MassStorageStatus storage;
    storage.SetTotalCapacity(static_cast<qint64>(status.totalBytes));
    storage.SetFreeCapacity(static_cast<qint64>(status.freeBytes));
    if (status.totalBytes > 0)
        storage.SetFreeCapacityInPercent(100.0 * static_cast<double>(status.freeBytes) /
                                         static_cast<double>(status.totalBytes));
    return storage;
}

} // namespace

QString storageStatusXml(const Device &device)
{
    KORVE_XML::KORVE_StorageStatus status;
    status.SetGUID(QUuid::createUuidV5(deviceNamespace, device.id).toString(QUuid::WithoutBraces));
    status.SetDeviceId(device.id);
    status.SetDeviceAddress(device.address);
    status.SetFirmwareVersion(device.status.firmwareVersion);
    status.SetRecordCount(device.status.recordCount);
    status.SetMassStorageStatus(massStorageOf(device.status));
    return status.GetXmlString();
}

} // namespace installation
