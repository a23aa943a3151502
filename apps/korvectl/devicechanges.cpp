#include "apps/korvectl/devicechanges.h"

#include "korvebase/valuetreepaths.h"
#include "valuetreelib/nodeptr.h"
#include "valuetreelib/node.h"

namespace korvectl
{

void DeviceChanges::watch(const QString &devicesPath)
{
    values::NodePtr node;
    if (!node.GetFromTree(devicesPath))
        return;
    for (const values::TreeItem *item : node->GetTreeItems()) {
        const QString path = item->GetPathName();
        Device &device = devices.try_emplace(path, this).first->second;
        if (!device.available)
            device.available.GetFromTree(path + QLatin1String("/KorveAvailable"));
        if (!device.recordCount)
            device.recordCount.GetFromTree(path + korve::path::recordsLoadCount);
    }
}

void DeviceChanges::Update(Observable *, TChangeCode)
{
    Q_EMIT si_changed();
}

} // namespace korvectl
