#include "apps/korvectl/recordscommand.h"

#include "apps/korvectl/console.h"
#include "apps/korvectl/listing.h"
#include "apps/korvectl/partialanswer.h"
#include "apps/korvectl/recorderdisk.h"
#include "apps/korvectl/recordfollower.h"

#include <algorithm>

namespace korvectl
{

namespace
{

/// @throws Failure when records of the device are missing in every list, since the recorder refuses their files.
void requireNoneRefused(const CentralService &service, const QString &subsystem, const QString &device,
                        std::chrono::milliseconds timeout)
{
    QVector<RefusedFile> files;
    try {
        const TQ_KORVE::IF_Control_var recorder = service.recorder(subsystem, device, timeout);
        if (!CORBA::is_nil(recorder))
            files = refusedFiles(recorder);
    } catch (const CORBA::Exception &) { // a client need not reach it; `doctor` tells of that
    }
    const auto isOther = [](const RefusedFile &file) { return !file.isOfRecord(); };
    files.erase(std::remove_if(files.begin(), files.end(), isOther), files.end());
    if (!files.isEmpty())
        throw Failure(ExitCode::Partial, QStringLiteral("A part of the records of %1 is missing, since the recorder refuses "
                                                        "their files: %2.")
                                             .arg(device, namesOf(files)));
}

} // namespace

ExitCode listRecords(const CommandLine &line)
{
    const CentralService service(line.timeout);
    ManagerSession session(service, line.subsystem, line.timeout);
    if (line.follow)
        return followRecords(session, line);
    QVector<ListedRecord> listed;
    PartialAnswer answer;
    const QStringList ids = line.device.isEmpty() ? session.deviceIds() : QStringList{line.device};
    for (const QString &id : ids) {
        const bool isListed = answer.ask([&] {
            const ManagerSession::Records records = session.records(id);
            for (const KORVE_XML::KORVE_RecordData &record : records)
                listed << ListedRecord{id, record};
        });
        if (isListed)
            answer.ask([&] { requireNoneRefused(service, session.subsystem(), id, line.timeout); });
    }
    if (answer.isWorthPrinting())
        print(line.json ? recordsJson(listed) : recordsTable(listed));
    return answer.exitCode();
}

} // namespace korvectl
