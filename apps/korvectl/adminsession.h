#pragma once

#include "apps/korvectl/managersession.h"
#include "apps/korvectl/outcome.h"

#include "connectionmanagement/guitoserveradmincorbahandler.h"

#include <functional>

namespace korvectl
{

/// The administration of records at a manager, for one command.
///
/// Nothing is asked twice: what may have been done is told as unknown.
/// Thread: main; blocks.  Errors: throws Failure.
class AdminSession
{
public:
    using Handler = KorveGUI::GuiToServerAdminCorbaHandler;
    using Operation = std::function<unsigned long(Handler &)>;

    /// Waits for the services. Borrows @p line.
    explicit AdminSession(const CommandLine &line);

    /// Has @p operation done. @p words and @p about are those of a Deed; @p check is a command without "korvectl".
    void change(Flow flow, const QString &words, const QStringList &check, const Operation &operation);
    /// Has an operation done that changes nothing.
    void ask(Flow flow, const QString &words, const Operation &operation);
    /// The record that the command line names.
    KORVE_XML::KORVE_RecordData record(Flow flow = Flow::Admin);
    /// Asks for that record; returns the manager's number.
    unsigned long find(KORVE_XML::KORVE_RecordData &record) { return handler.getRecord(line.device, line.record, record); }
    /// "record R1 on REC1"
    QString recordWords() const;
    QStringList showRecord() const { return {QStringLiteral("record"), QStringLiteral("show"), line.device, line.record}; }

    const ManagerSession &manager() const { return session; }
    const CentralService &centralService() const { return service; }

private:
    void perform(const Deed &deed, const Operation &operation);

    const CommandLine &line;
    const CentralService service;
    const ManagerSession session;
    Handler handler;
};

} // namespace korvectl
