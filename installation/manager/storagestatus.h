#pragma once

#include "installation/manager/device.h"

namespace installation
{

/// What is known of the storage of a device, as `KORVE_XML::KORVE_StorageStatus` in XML.
///
/// Its GUID is made of the device's id, so that it is always the same. A type and a serial number are not known.
QString storageStatusXml(const Device &device);

} // namespace installation
