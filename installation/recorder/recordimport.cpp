#include "installation/recorder/recordimport.h"

#include "installation/recorder/file.h"
#include "installation/recorder/importsource.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/reservedrecord.h"

#include <QCryptographicHash>

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

} // namespace

QString importFile(StoreThread &store, const QString &path, const ImportControl &control)
{
    const ImportSource source = inspectFile(path);
    try {
        requireRoom(store, source.record.sizeBytes);
        ReservedRecord reserved(store);
        copySamples(source, reserved.samplesPath(), control);
        stopWhenCancelled(control);
        return reserved.adopt(source.record);
    } catch (const RecorderError &error) {
        throw RecorderError(error.kind(), QStringLiteral("%1: %2").arg(path, error.text()));
    }
}

} // namespace installation::recorder
