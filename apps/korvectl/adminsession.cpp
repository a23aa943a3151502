#include "apps/korvectl/adminsession.h"

namespace korvectl
{

AdminSession::AdminSession(const CommandLine &line)
    : line(line), service(line.timeout), session(service, line.subsystem, line.timeout), handler(session.handler())
{
}

void AdminSession::change(Flow flow, const QString &words, const QStringList &check, const Operation &operation)
{
    perform({flow, words, line.record.isEmpty() ? line.device : line.record, commandText(line, check)}, operation);
}

void AdminSession::ask(Flow flow, const QString &words, const Operation &operation)
{
    perform({flow, words, line.record.isEmpty() ? line.device : line.record}, operation);
}

void AdminSession::perform(const Deed &deed, const Operation &operation)
{
    const unsigned long number = operation(handler);
    require({number, handler.OutcomeIsUnknown()}, deed);
}

KORVE_XML::KORVE_RecordData AdminSession::record(Flow flow)
{
    KORVE_XML::KORVE_RecordData found;
    ask(flow, QStringLiteral("asking for %1").arg(recordWords()),
        [&](Handler &admin) { return admin.getRecord(line.device, line.record, found); });
    return found;
}

QString AdminSession::recordWords() const
{
    return QStringLiteral("record %1 on %2").arg(line.record, line.device);
}

} // namespace korvectl
