#include "installation/manager/recordwatch.h"

#include "installation/manager/notificationreceiver.h"

#include "coresupport/trace.h"

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/manager/recordwatch";

QVector<RecordState> busyIn(const QString &device, const TQ_KORVE::seqMETA_DATA &records)
{
    QVector<RecordState> busy;
    for (CORBA::ULong position = 0; position < records.length(); ++position) {
        const TQ_KORVE::struMETA_DATA &record = records[position];
        if (record.recordStatus == TQ_KORVE::rsIDLE)
            continue;
        const QString name(reinterpret_cast<const QChar *>(record.recordName.get_buffer()),
                           static_cast<int>(record.recordName.length()));
        busy.append({device, QString::fromUtf8(record.recordID), name, toClientStatus(record.recordStatus)});
    }
    return busy;
}

} // namespace

RecordWatch::RecordWatch(ServedObjects objects, std::shared_ptr<RecordStates> states)
    : objects(std::move(objects)), states(std::move(states))
{
}

int RecordWatch::follow(const QString &device, TQ_KORVE::IF_Control_ptr recorder)
{
    announce(device, recorder);
    const RecordStates::Moment asked = states->now();
    const TQ_KORVE::seqMETA_DATA_var records = recorder->listAllRecordsEx3();
    states->compare(device, busyIn(device, records.in()), asked);
    return static_cast<int>(records->length());
}

/// A recorder that takes no receiver still has its list.
void RecordWatch::announce(const QString &device, TQ_KORVE::IF_Control_ptr recorder)
{
    try {
        const CORBA::Object_var object = receiverFor(device).reference();
        recorder->announceNotificationReceiver(
            TQ_KORVE_IT::IF_Korve_IT_var(TQ_KORVE_IT::IF_Korve_IT::_unchecked_narrow(object)));
    } catch (const CORBA::Exception &error) {
        traceAt(TraceLevel::Debug, sourceName, [&] {
            return QStringLiteral("device %1 will not tell of changes: %2").arg(device, QLatin1String(error._name()));
        });
    }
}

const Activation &RecordWatch::receiverFor(const QString &device)
{
    const std::scoped_lock lock(*mutex);
    std::shared_ptr<Activation> &receiver = receivers[device];
    if (!receiver)
        receiver = objects.serve<NotificationReceiver>("KorveManagerNotifications-" + device.toStdString(), device,
                                                       states);
    return *receiver;
}

} // namespace installation
