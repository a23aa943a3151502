#include "apps/korvectl/recordcommands.h"

#include "apps/korvectl/adminsession.h"
#include "apps/korvectl/console.h"
#include "apps/korvectl/jsontext.h"
#include "apps/korvectl/recordscale.h"
#include "apps/korvectl/recordview.h"

#include "connectionmanagement/guitoserverexportcorbahandler.h"

namespace korvectl
{

namespace
{

using Handler = AdminSession::Handler;
using KORVE_XML::KORVE_RecordData;

/// The manager's number for a record that is not there.
constexpr unsigned long unknownRecord = 501;

QJsonObject objectOf(const CommandLine &line)
{
    return {{QStringLiteral("device"), line.device}, {QStringLiteral("record"), line.record}};
}

ExitCode report(const CommandLine &line, const QString &sentence, const char *key, const QJsonValue &value)
{
    QJsonObject object = objectOf(line);
    object.insert(QLatin1String(key), value);
    print(line.json ? jsonText(object) : sentence + u'\n');
    return ExitCode::Success;
}

TQ_KRV::seqFILE_PART_var partsOf(const QVector<ByteRange> &ranges)
{
    TQ_KRV::seqFILE_PART_var parts = new TQ_KRV::seqFILE_PART;
    parts->length(static_cast<CORBA::ULong>(ranges.size()));
    for (int position = 0; position < ranges.size(); ++position)
        parts[static_cast<CORBA::ULong>(position)] = {ranges[position].begin, ranges[position].end};
    return parts;
}

/// Why a device would keep the record; empty where it tells no reason.
QString obstacle(const KORVE_RecordData &record)
{
    if (!record.GetDeletable())
        return QStringLiteral("its deletion is forbidden");
    return record.GetRecordStatus() == KORVE_RecordData::IDLE
               ? QString()
               : QStringLiteral("its status is %1").arg(record.GetRecordStatusAsString());
}

/// A deletion is answered by yes or no alone, so what has become of the record tells the rest. What was not answered at all
/// may be going on still.
void explainKept(AdminSession &admin, const CommandLine &line, bool outcomeIsUnknown)
{
    const QString check = commandText(line, admin.showRecord());
    const QString unknown = QStringLiteral("The outcome of deleting %1 is unknown: %2. Check it with: %3");
    KORVE_RecordData record;
    const unsigned long number = admin.find(record);
    if (number == unknownRecord)
        return; // so it has been deleted
    if (number != 0)
        throw Failure(ExitCode::Unknown,
                      unknown.arg(admin.recordWords(), sentenceFor(number, Flow::Admin, line.record), check));
    const QString reason = outcomeIsUnknown ? QString() : obstacle(record);
    if (reason.isEmpty())
        throw Failure(
            ExitCode::Unknown,
            unknown.arg(admin.recordWords(), QStringLiteral("it was not confirmed, and the record is there now"), check));
    throw Failure(ExitCode::Refused,
                  QStringLiteral("Deleting %1 was refused: %2.").arg(admin.recordWords(), reason));
}

} // namespace

ExitCode showRecord(const CommandLine &line)
{
    const KORVE_RecordData record = AdminSession(line).record();
    print(line.json ? jsonText(recordDetails(line.device, record)) : recordText(line.device, record));
    return ExitCode::Success;
}

ExitCode setComment(const CommandLine &line)
{
    AdminSession admin(line);
    admin.change(Flow::Admin, QStringLiteral("setting the comment of %1").arg(admin.recordWords()), admin.showRecord(),
                 [&](Handler &handler) { return handler.SetRecordComment(line.device, line.record, line.text); });
    return report(line, QStringLiteral("The comment of %1 is set.").arg(admin.recordWords()), "comment", line.text);
}

ExitCode setDeletable(const CommandLine &line)
{
    AdminSession admin(line);
    const char *const verb = line.isOn ? "allowing" : "forbidding";
    admin.change(Flow::Admin, QStringLiteral("%1 the deletion of %2").arg(QLatin1String(verb), admin.recordWords()),
                 admin.showRecord(),
                 [&](Handler &handler) { return handler.SetRecordDeletableFlag(line.device, line.record, line.isOn); });
    const QString allowed = line.isOn ? QStringLiteral("allowed") : QStringLiteral("forbidden");
    return report(line, QStringLiteral("The deletion of %1 is %2.").arg(admin.recordWords(), allowed), "deletable",
                  line.isOn);
}

ExitCode copyRecord(const CommandLine &line)
{
    AdminSession admin(line);
    const KORVE_RecordData record = admin.record();
    const TQ_KRV::seqFILE_PART_var parts = partsOf(RecordScale(record).rangesOf(line.sections));
    const QString name = line.name.isEmpty() ? record.GetRecordName() : line.name;
    QString copy;
    admin.change(
        Flow::Admin, QStringLiteral("copying %1").arg(admin.recordWords()), {QStringLiteral("records"), line.device},
        [&](Handler &handler) { return handler.CopyRecord(line.device, line.record, copy, parts, name); });
    return report(line, QStringLiteral("%1: %2").arg(line.record, copy), "copy", copy);
}

ExitCode deleteRecord(const CommandLine &line)
{
    AdminSession admin(line);
    admin.record(); // one that is not there cannot be deleted
    const KorveGUI::GuiToServerExportCorbaHandler handler(admin.manager().handler());
    bool outcomeIsUnknown = false;
    if (!handler.deleteRecord(line.device, line.record, &outcomeIsUnknown))
        explainKept(admin, line, outcomeIsUnknown);
    return report(line, QStringLiteral("The %1 is deleted.").arg(admin.recordWords()), "deleted", true);
}

} // namespace korvectl
