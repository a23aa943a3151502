#include "apps/korvectl/recordscommand.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/listing.h"
#include "apps/korvectl/partialanswer.h"
#include "apps/korvectl/recordfollower.h"

namespace korvectl
{

ExitCode listRecords(const CommandLine &line)
{
    const CentralService service(line.timeout);
    ManagerSession session(service, line.subsystem, line.timeout);
    if (line.follow)
        return followRecords(session, line);
    QVector<ListedRecord> listed;
    PartialAnswer answer;
    const QStringList ids = line.device.isEmpty() ? session.deviceIds() : QStringList{line.device};
    for (const QString &id : ids)
        answer.ask([&] {
            const ManagerSession::Records records = session.records(id);
            for (const KORVE_XML::KORVE_RecordData &record : records)
                listed << ListedRecord{id, record};
        });
    if (answer.isWorthPrinting())
        print(line.json ? recordsJson(listed) : recordsTable(listed));
    return answer.exitCode();
}

} // namespace korvectl
