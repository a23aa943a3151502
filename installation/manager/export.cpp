#include "installation/manager/export.h"

#include "installation/cco/orbaccess.h"

#include "coresupport/trace.h"

#include <QUrl>
#include <QUuid>

#include <stdexcept>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/export";
constexpr int silencesUntilGivenUp = 3;

[[noreturn]] void fail(const QString &reason)
{
    throw std::runtime_error(reason.toStdString());
}

/// Makes @p call, and says in words what went wrong with the one who is @p called.
template <typename Call> auto made(const char *called, Call call)
{
    try {
        return call();
    } catch (const TQ_KORVE::exKorve &refusal) {
        fail(QStringLiteral("%1 refuses: %2").arg(QLatin1String(called), QString::fromUtf8(refusal.text)));
    } catch (const CORBA::Exception &error) {
        fail(QStringLiteral("%1 does not answer: %2").arg(QLatin1String(called), QLatin1String(error._name())));
    }
}

/// What tells the recorder where to send which part of a file.
QString destinationOf(const StreamAddress &address, const QString &name, quint64 size)
{
    const QString path = QString::fromLatin1(QUrl::toPercentEncoding(name));
    return QStringLiteral("tcp://%1:%2/%3?offset=%4&size=%5") // all at once: a path has more % of its own
        .arg(address.host, QString::number(address.port), path, QString::number(address.offset), QString::number(size));
}

std::string newKey()
{
    return "KorveManagerTransfer-" + QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString();
}

} // namespace

Export::Export(ExportOrder order, const ServedObjects &objects, std::shared_ptr<const DeviceDirectory> directory,
               const ManagerConfiguration::Timing &timing)
    : order(std::move(order)), directory(std::move(directory)), timing(timing), transfer(std::make_shared<Transfer>()),
      receiver(objects.serve<TransferReceiver>(newKey(), transfer))
{
}

void Export::run()
{
    try {
        exportFiles();
        finish(true, QString());
    } catch (const std::runtime_error &error) {
        const QString reason = QString::fromUtf8(error.what());
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("export %1 has failed: %2").arg(order.id, reason); });
        finish(false, reason);
    }
}

void Export::exportFiles()
{
    made("the exporter", [&] { order.exporter->exportStarted(); });
    const QVector<File> all = files();
    tellFiles(all);
    for (const File &file : all)
        send(file);
}

QVector<Export::File> Export::files() const
{
    const Device device = recorderNow();
    const QByteArray place = "export:" + order.record.toUtf8();
    const TQ_KORVE::seqMETA_DATA_var listed =
        made("the recorder", [&] { return device.control.in()->listAllRecordsOnArchDev(place.constData()); });
    QVector<File> found;
    for (CORBA::ULong position = 0; position < listed->length(); ++position)
        found.append({QString::fromUtf8(listed.in()[position].recordID), listed.in()[position].size});
    return found;
}

void Export::tellFiles(const QVector<File> &files) const
{
    TQ_KRV::seqString names;
    names.length(static_cast<CORBA::ULong>(files.size()));
    for (int position = 0; position < files.size(); ++position)
        names[static_cast<CORBA::ULong>(position)] = files[position].name.toUtf8().constData();
    made("the exporter", [&] { order.exporter->exportFileList(names); });
}

void Export::send(const File &file)
{
    transfer->begin();
    if (transfer->wait(std::chrono::milliseconds(0)) == Transfer::State::Cancelled)
        fail(QStringLiteral("the export was cancelled"));
    const QByteArray name = file.name.toUtf8();
    const QString answer = QString::fromUtf8(CORBA::String_var(made("the exporter", [&] {
                                                 return order.exporter->startFileStream(name.constData(), file.size);
                                             })).in());
    if (answer.isEmpty()) // it does not want this one
        return;
    try {
        const auto address = streamAddressIn(answer);
        if (!address || address->offset > file.size)
            fail(QStringLiteral("%1 cannot be sent to \"%2\"").arg(file.name, answer));
        transferTo(*address, file);
    } catch (const std::runtime_error &) {
        tell("a failure", [&] { order.exporter->fileStreamFinished(name.constData(), false); });
        throw;
    }
    made("the exporter", [&] { order.exporter->fileStreamFinished(name.constData(), true); });
}

void Export::transferTo(const StreamAddress &address, const File &file)
{
    const Device device = recorderNow();
    const QByteArray destination = destinationOf(address, file.name, file.size).toUtf8();
    const CORBA::Object_var object = receiver->reference();
    const TQ_KORVE_IT::IF_Korve_IT_var hearer = TQ_KORVE_IT::IF_Korve_IT::_unchecked_narrow(object);
    made("the recorder", [&] {
        device.control.in()->copyRecordToArchDevEx(order.record.toUtf8().constData(), destination.constData(), hearer);
    });
    waitForEnd(device, destination);
}

void Export::waitForEnd(const Device &device, const QByteArray &destination)
{
    Patience patience;
    Transfer::State state{};
    while ((state = transfer->wait(timing.lookInterval)) == Transfer::State::Running) {
        checkRecorder(device, destination, patience);
        checkExporter(patience);
    }
    if (state == Transfer::State::Cancelled)
        fail(QStringLiteral("the export was cancelled"));
    if (state == Transfer::State::Failed)
        fail(transfer->reason());
}

void Export::checkRecorder(const Device &device, const QByteArray &destination, Patience &patience) const
{
    const auto now = directory->find(device.id);
    if (!now || !now->control.in()->_is_equivalent(device.control))
        fail(QStringLiteral("the recorder has restarted"));
    const auto moment = Patience::Clock::now();
    if (now->available)
        patience.recorderSeen = moment;
    if (moment - patience.recorderSeen > timing.exportSilenceLimit)
        fail(QStringLiteral("the recorder is silent"));
    if (!now->available || !isOver(device, destination))
        patience.overSince.reset();
    else if (moment - patience.overSince.emplace(patience.overSince.value_or(moment)) > timing.exportEndLimit)
        fail(QStringLiteral("the recorder does not send any more and has not told how it ended"));
}

/// False also for a recorder that does not say.
bool Export::isOver(const Device &device, const QByteArray &destination) const
{
    const QByteArray place = "sending:" + order.record.toUtf8();
    try {
        const TQ_KORVE::IF_Control_var recorder =
            withCallLimit<TQ_KORVE::IF_Control>(device.control, timing.statusLimit);
        const TQ_KORVE::seqMETA_DATA_var going = recorder->listAllRecordsOnArchDev(place.constData());
        for (CORBA::ULong position = 0; position < going->length(); ++position)
            if (destination == going.in()[position].recordID.in())
                return false;
        return true;
    } catch (const CORBA::Exception &) {
        return false;
    }
}

void Export::checkExporter(Patience &patience) const
{
    try {
        CORBA::String_var(order.exporter->exportID());
        patience.exporterSilences = 0;
    } catch (const CORBA::Exception &) {
        if (++patience.exporterSilences >= silencesUntilGivenUp)
            fail(QStringLiteral("the exporter does not answer any more"));
    }
}

Device Export::recorderNow() const
{
    const auto device = directory->find(order.device);
    if (!device || CORBA::is_nil(device->control))
        fail(QStringLiteral("device %1 has not been found").arg(order.device));
    return *device;
}

void Export::finish(bool success, const QString &text)
{
    over = true;
    tell("the end", [&] { order.exporter->exportFinished(success, text.toUtf8().constData()); });
}

/// That nobody hears it does not change how the export went.
template <typename Call> void Export::tell(const char *what, Call call) const
{
    try {
        call();
    } catch (const CORBA::Exception &error) {
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("%1 of export %2 could not be told: %3")
                .arg(QLatin1String(what), order.id, QLatin1String(error._name()));
        });
    }
}

} // namespace installation
