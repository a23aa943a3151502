#include "installation/recorder/recordimport.h"

#include "installation/recorder/file.h"
#include "installation/recorder/importsource.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordstore.h"
#include "installation/recorder/storethread.h"

#include "coresupport/trace.h"

#include <QCryptographicHash>

#include <algorithm>
#include <optional>

namespace installation::recorder
{

namespace
{

constexpr const char *sourceName = "installation/recorder/recordimport";
constexpr quint64 stepBytes = 1 << 20;

void requireRoom(quint64 sizeBytes, const RecordStore::Room &room)
{
    if (sizeBytes > room.freeBytes)
        throw RecorderError(TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE,
                            QStringLiteral("%1 bytes are wanted and %2 are free")
                                .arg(QString::number(sizeBytes), QString::number(room.freeBytes)));
}

void stopWhenCancelled(const ImportControl &control)
{
    if (control.cancellation.stop_requested())
        throw RecorderError(TQ_KORVE::ekRECORD_CREATION_FAILED, QStringLiteral("cancelled"));
}

/// Copies the samples of @p source to a new file, which is on the disk when this returns.
void copySamples(const ImportSource &source, const QString &target, const ImportControl &control)
{
    const quint64 total = source.record.sizeBytes;
    File to = File::create(target);
    QCryptographicHash checksum(QCryptographicHash::Sha512);
    for (quint64 done = 0; done < total;) {
        stopWhenCancelled(control);
        const QByteArray step = source.samples->read(static_cast<qint64>(std::min(stepBytes, total - done)));
        if (step.isEmpty())
            throw RecorderError(TQ_KORVE::ekRECORD_CORRUPTED, QStringLiteral("it became shorter while it was read"));
        to.write(step);
        if (!source.sha512.isEmpty())
            checksum.addData(step);
        done += step.size();
        if (control.progress)
            control.progress(done, total);
    }
    if (!source.sha512.isEmpty() && checksum.result() != source.sha512)
        throw RecorderError(TQ_KORVE::ekRECORD_CORRUPTED, QStringLiteral("the samples do not have their checksum"));
    to.sync();
}

/// A place in the store that is given back unless a record was made of it.
class Reserved
{
public:
    explicit Reserved(StoreThread &store)
        : store(store), reservation(store.ask([](RecordStore &records) { return records.reserve(); }))
    {
    }
    Reserved(const Reserved &) = delete;
    ~Reserved()
    {
        if (!adopted)
            giveBack();
    }

    const QString &samplesPath() const { return reservation.samplesPath; }
    QString adopt(Record record)
    {
        record.id = reservation.id;
        store.ask([record](RecordStore &records) { records.adopt(record); });
        adopted = true;
        return record.id;
    }

private:
    void giveBack()
    {
        try {
            store.ask([id = reservation.id](RecordStore &records) { records.abandon(id); });
        } catch (const RecorderError &error) { // the next start of the store clears it away
            traceAt(TraceLevel::Normal, sourceName, [&] { return error.text(); });
        }
    }

    StoreThread &store;
    const RecordStore::Reservation reservation;
    bool adopted = false;
};

} // namespace

QString importFile(StoreThread &store, const QString &path, const ImportControl &control)
{
    const ImportSource source = inspectFile(path);
    try {
        requireRoom(source.record.sizeBytes, store.ask([](RecordStore &records) { return records.room(); }));
        Reserved reserved(store);
        copySamples(source, reserved.samplesPath(), control);
        stopWhenCancelled(control);
        return reserved.adopt(source.record);
    } catch (const RecorderError &error) {
        throw RecorderError(error.kind(), QStringLiteral("%1: %2").arg(path, error.text()));
    }
}

} // namespace installation::recorder
