#include "installation/manager/leftrecordings.h"

#include "installation/manager/channeltext.h"
#include "installation/manager/database.h"
#include "installation/manager/recordinglink.h"
#include "installation/manager/recordview.h"

#include "coresupport/trace.h"

#include <QDir>
#include <QVariant>

#include <stdexcept>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/leftrecordings";

const Database::Form form{
    0x4b52564c, {QStringLiteral("CREATE TABLE recording (number INTEGER PRIMARY KEY, run TEXT NOT NULL)")}};

QVariant keyOf(const ChannelRun &run)
{
    return static_cast<qint64>(run.number);
}

/// @p what has failed, in words, when the disk refuses @p work.
template <typename Work> void traced(const char *what, Work work)
{
    try {
        work();
    } catch (const std::runtime_error &error) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("%1: %2").arg(QLatin1String(what), QString::fromUtf8(error.what())); });
    }
}

} // namespace

LeftRecordings::LeftRecordings(const QString &stateFolder, const RunContext &context, RunWatch &watch)
    : path(QDir(stateFolder).absoluteFilePath(QStringLiteral("leftrecordings.sqlite"))), context(context), watch(watch)
{
    Database::prepare(path, form, [this] { load(); });
}

void LeftRecordings::resume()
{
    for (const ChannelRun &run : load())
        lookAfter(run);
}

void LeftRecordings::add(const ChannelRun &run)
{
    traced("a recording to be ended is not kept", [&] { save(run); });
    lookAfter(run);
}

std::vector<ChannelRun> LeftRecordings::load() const
{
    const std::scoped_lock lock(mutex);
    const Database database(path);
    QSqlQuery rows = database.run(QStringLiteral("SELECT run FROM recording"));
    std::vector<ChannelRun> runs;
    while (rows.next())
        runs.push_back(runFrom(rows.value(0).toByteArray()));
    return runs;
}

void LeftRecordings::save(const ChannelRun &run) const
{
    const std::scoped_lock lock(mutex);
    Database(path).run(QStringLiteral("INSERT OR REPLACE INTO recording (number, run) VALUES (?, ?)"),
                       {keyOf(run), toText(run)});
}

void LeftRecordings::forget(const ChannelRun &run) const
{
    const std::scoped_lock lock(mutex);
    Database(path).run(QStringLiteral("DELETE FROM recording WHERE number = ?"), {keyOf(run)});
}

void LeftRecordings::lookAfter(const ChannelRun &run)
{
    watch.add([this, run] {
        if (!isEnded(run))
            return true;
        traced("a recording that has ended is still kept as one to be ended", [&] { forget(run); });
        return false;
    });
}

/// Ends the recording if it goes on. False as long as nobody knows whether it does.
bool LeftRecordings::isEnded(const ChannelRun &run) const
{
    const auto device = context.devices->find(run.deviceId);
    if (!device || CORBA::is_nil(device->control))
        return false;
    try {
        const TQ_KORVE::eRECORD_STATUS status = RecordView::of(device->control, run.recordId).status;
        if (status == TQ_KORVE::rsRECORDING || status == TQ_KORVE::rsREADY_FOR_RECORDING)
            RecordingLink(run, context.timing.callLimit).end({});
        return true;
    } catch (const TQ_KORVE::exKorve &refusal) { // without a sample there is no record any more
        return refusal.kind == TQ_KORVE::ekINVALID_RECORD_ID;
    } catch (const CORBA::SystemException &) { // a recorder that comes back tells
        return false;
    }
}

} // namespace installation
