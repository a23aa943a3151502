#include "installation/recorder/recordimport.h"

#include "installation/recorder/file.h"
#include "installation/recorder/importsource.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/reservedrecord.h"

#include <QCryptographicHash>
#include <QJsonObject>

#include <algorithm>

namespace installation::recorder
{

namespace
{

constexpr quint64 stepBytes = 1 << 20;

void stopWhenCancelled(const ImportControl &control)
{
    if (control.cancellation.stop_requested())
        throw RecorderError(TQ_KORVE::ekRECORD_CREATION_FAILED, QStringLiteral("cancelled"));
}

/// Copies the samples of @p source to a new file, which is on the disk when this returns.
/// @return their checksum
QByteArray copySamples(const ImportSource &source, const QString &target, const ImportControl &control)
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
        checksum.addData(step);
        done += step.size();
        if (control.progress)
            control.progress(done, total);
    }
    if (!source.sha512.isEmpty() && checksum.result() != source.sha512)
        throw RecorderError(TQ_KORVE::ekRECORD_CORRUPTED, QStringLiteral("the samples do not have their checksum"));
    to.sync();
    return checksum.result();
}

/// So that whoever has fetched the samples can compare them.
void noteChecksum(Record &record, const QByteArray &sha512)
{
    QJsonObject global = record.sigmf.value(QLatin1String("global")).toObject();
    global[QLatin1String("core:sha512")] = QString::fromLatin1(sha512.toHex());
    record.sigmf[QLatin1String("global")] = global;
}

} // namespace

QString importFile(StoreThread &store, const QString &path, const ImportControl &control)
{
    ImportSource source = inspectFile(path);
    requireRoom(store, source.record.sizeBytes);
    ReservedRecord reserved(store);
    noteChecksum(source.record, copySamples(source, reserved.samplesPath(), control));
    stopWhenCancelled(control);
    return reserved.adopt(source.record);
}

} // namespace installation::recorder
