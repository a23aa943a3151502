#include "installation/recorder/sessions.h"

#include "installation/recorder/devicestructures.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordingsession.h"
#include "installation/recorder/recordstore.h"
#include "installation/recorder/replaysession.h"

#include "coresupport/trace.h"
#include "korvebase/corbatodeviceconverter.h"

#include <QUuid>

namespace installation::recorder
{

using KORVE_XML::KORVE_RecordData;
namespace Converter = KorveCommon::CorbaToDeviceConverter;

/// A record that is to be played or made, with the sign that it is.
struct Sessions::Opened {
    Record record;
    QString samplesPath;
    std::unique_ptr<Activity> activity;
};

namespace
{

constexpr const char *sourceName = "installation/recorder/sessions";

/// No session has the key of one before, so that an old reference reaches nobody.
std::string newKey()
{
    return "Session/" + QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString();
}

RecordStatus statusAt(RecordingReceiver::Stage stage)
{
    return stage == RecordingReceiver::Stage::Recording ? KORVE_RecordData::RECORDING : KORVE_RecordData::INDEXING;
}

} // namespace

Sessions::Sessions(Surroundings surroundings) : around(std::move(surroundings)) {}

TQ_KORVE::IF_ReplaySession_ptr Sessions::replay(const QString &recordId, Receiver receiver, std::optional<DataRate> rate)
{
    const std::scoped_lock lock(making);
    const CORBA::Object_var found = sessions.find(SessionKind::Replay, recordId);
    TQ_KORVE::IF_ReplaySession_var session = CORBA::is_nil(found) ? makeReplay(recordId, rate)
                                                                  : TQ_KORVE::IF_ReplaySession::_narrow(found);
    attach(receiver, recordId, CORBA::is_nil(found));
    return session._retn();
}

TQ_KORVE::IF_ReplaySession_ptr Sessions::makeReplay(const QString &recordId, std::optional<DataRate> rate)
{
    requireRoom(SessionKind::Replay);
    Opened opened = open(recordId);
    const std::shared_ptr<Activity> activity = std::move(opened.activity);
    const DataRate occupied = rate.value_or(opened.record.rate);
    const auto sender = std::make_shared<ReplaySender>(
        std::make_unique<ReplaySource>(opened.record, opened.samplesPath),
        ReplaySender::Listener{[weak = std::weak_ptr(activity)](bool playing) {
                                   if (const auto activity = weak.lock())
                                       activity->become(playing ? KORVE_RecordData::REPLAYING
                                                                : KORVE_RecordData::READY_FOR_REPLAY);
                               },
                               [this, recordId] { sessions.ended(SessionKind::Replay, recordId); }});
    const ReplaySession::Description description{
        toDetails(opened.record), static_cast<TQ_KORVE::eDATARATE_CLASS>(Converter::convertDataRateFromXml(occupied)),
        around.ownHost, around.publishedHost, endOf(recordId)};
    const auto activation = around.objects.serve<ReplaySession>(newKey(), sender, description);
    const CORBA::Object_var reference = activation->reference();
    sessions.add({SessionKind::Replay, recordId, occupied, sender, activation, activity});
    return TQ_KORVE::IF_ReplaySession::_narrow(reference);
}

/// Nobody gets a session whose receiver cannot be served, so that a new one ends.
void Sessions::attach(Receiver receiver, const QString &recordId, bool isNew)
{
    try {
        around.notifier->attach(receiver, recordId);
    } catch (const RecorderError &) {
        if (isNew)
            sessions.end(recordId);
        throw;
    }
}

void Sessions::requireRoom(SessionKind kind)
{
    if (isStopped)
        throw RecorderError(TQ_KORVE::ekSESSION_CREATION_FAILED, QStringLiteral("the recorder is about to end"));
    sessions.requireRoom(kind);
}

TQ_KORVE::IF_RecordingSession_ptr Sessions::record(const RecordingWish &wish, Receiver receiver, DataRate occupied)
{
    const std::scoped_lock lock(making);
    requireRoom(SessionKind::Recording);
    Opened opened = begin(wish);
    const QString recordId = opened.record.id;
    const std::shared_ptr<Activity> activity = std::move(opened.activity);
    const std::shared_ptr<RecordingReceiver> work = receiverOf(opened, activity);
    const RecordingSession::Description description{recordId, sampleRateOf(opened.record), around.ownHost,
                                                    around.publishedHost};
    const auto activation = around.objects.serve<RecordingSession>(newKey(), work, description);
    const CORBA::Object_var reference = activation->reference();
    sessions.add({SessionKind::Recording, recordId, occupied, work, activation, activity});
    attach(receiver, recordId, true);
    return TQ_KORVE::IF_RecordingSession::_narrow(reference);
}

/// From here on the end of the receiver sees to the record, which goes at once when there cannot be one.
std::shared_ptr<RecordingReceiver> Sessions::receiverOf(const Opened &opened, const std::shared_ptr<Activity> &activity)
{
    const QString recordId = opened.record.id;
    const RecordingReceiver::Listener listener{[weak = std::weak_ptr(activity)](RecordingReceiver::Stage stage) {
                                                   if (const auto activity = weak.lock())
                                                       activity->become(statusAt(stage));
                                               },
                                               [this, recordId] { sessions.ended(SessionKind::Recording, recordId); }};
    try {
        return std::make_shared<RecordingReceiver>(
            std::make_unique<RecordingWriter>(opened.samplesPath, sampleLayout(opened.record), opened.record.loopSizeBytes),
            RecordingBook(*around.store, recordId), around.clockUs, listener);
    } catch (const std::exception &) { // no descriptor, no thread
        discard(std::make_shared<QString>(recordId));
        throw;
    }
}

/// Removes a record without samples once the store has done what was asked of it before; empty: it has made none.
void Sessions::discard(const std::shared_ptr<const QString> &recordId) const
{
    try {
        around.store->tell([recordId](RecordStore &records) {
            if (!recordId->isEmpty())
                records.discard(*recordId);
        });
    } catch (const RecorderError &error) { // the next start of the store clears it away
        traceAt(TraceLevel::Normal, sourceName, [&] { return error.text(); });
    }
}

/// Makes a record without samples, on the store's thread.
Sessions::Opened Sessions::make(RecordStore &records, Activities &activities, Record record)
{
    const RecordStore::Reservation place = records.reserve();
    record.id = place.id;
    try {
        writeWhole(place.samplesPath, {});
        Opened opened{record, records.samplesPath(record.id),
                      activities.begin(record.id, record.name, KORVE_RecordData::READY_FOR_RECORDING)};
        records.adopt(record);
        return opened;
    } catch (const RecorderError &) {
        records.abandon(record.id);
        throw;
    }
}

/// Makes a record without samples. One that the store makes only when nobody waits for it any more goes again.
Sessions::Opened Sessions::begin(const RecordingWish &wish)
{
    const Record record = newRecording(wish, around.clockUs());
    const auto madeId = std::make_shared<QString>(); // the store's thread alone touches it
    try {
        return around.store->ask([activities = around.activities, record, madeId](RecordStore &records) {
            Opened opened = make(records, *activities, record);
            *madeId = opened.record.id;
            return opened;
        });
    } catch (const RecorderError &error) {
        if (error.isOutcomeUnknown())
            discard(madeId);
        throw;
    }
}

/// A call that is under way may outlive us.
std::function<void()> Sessions::endOf(const QString &recordId)
{
    return [weak = weak_from_this(), recordId] {
        if (const auto self = weak.lock())
            self->sessions.end(recordId);
    };
}

Sessions::Opened Sessions::open(const QString &recordId)
{
    return around.store->ask([activities = around.activities, recordId](RecordStore &records) {
        Opened opened{records.recordInOrder(recordId), records.samplesPath(recordId), nullptr};
        opened.activity = activities->begin(recordId, opened.record.name, KORVE_RecordData::READY_FOR_REPLAY);
        return opened;
    });
}

void Sessions::announce(Receiver receiver)
{
    if (CORBA::is_nil(receiver))
        throw CORBA::BAD_PARAM(0, CORBA::COMPLETED_NO);
    try {
        around.notifier->announce(receiver);
    } catch (const RecorderError &) {
        throw CORBA::NO_RESOURCES(0, CORBA::COMPLETED_NO);
    }
}

QVector<RecordSummary> Sessions::active(const QVector<RecordSummary> &records) const
{
    const QStringList ids = sessions.recordIds();
    QVector<RecordSummary> chosen;
    for (const RecordSummary &record : records)
        if (ids.contains(record.id))
            chosen.append(around.activities->overlaid(record));
    return chosen;
}

void Sessions::setIdle(const QString &recordId)
{
    if (!sessions.end(recordId))
        around.store->ask([recordId](RecordStore &records) { records.record(recordId); });
}

void Sessions::stop()
{
    const std::scoped_lock lock(making);
    isStopped = true;
    sessions.endAll();
}

} // namespace installation::recorder
