#include "apps/korvectl/devicescommand.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/listing.h"
#include "apps/korvectl/partialanswer.h"

namespace korvectl
{

ExitCode listDevices(const CommandLine &line)
{
    const CentralService service(line.timeout);
    const ManagerSession session(service, line.subsystem, line.timeout);
    QVector<DeviceState> devices;
    PartialAnswer answer;
    const QStringList ids = session.deviceIds();
    for (const QString &id : ids)
        answer.ask([&] { devices << session.device(id); });
    if (answer.isWorthPrinting())
        print(line.json ? devicesJson(devices) : devicesTable(devices));
    return answer.exitCode();
}

} // namespace korvectl
