#include "apps/korvectl/exportrun.h"

#include "apps/korvectl/failure.h"

#include <algorithm>
#include <utility>

namespace korvectl
{

void ExportRun::setFiles(const QStringList &names)
{
    announced = names;
    Q_EMIT si_alive();
}

QString ExportRun::beginFile(const QString &name, quint64 size)
{
    Q_EMIT si_alive();
    try {
        const std::optional<quint64> begin = bytesThere(name, size);
        file(name) = {name, size, begin.value_or(size), !begin};
        if (!begin)
            return {};
        receiver = std::make_unique<FileReceiver>(FileReceiver::Target{folder.partPath(name), *begin, size},
                                                  way.address.listening, way.sender);
        connect(receiver.get(), &FileReceiver::si_received, this, [this, name] {
            Q_EMIT si_alive();
            Q_EMIT si_progress(name, receiver->received(), receiver->size());
        });
        return QStringLiteral("%1:%2/%3").arg(way.address.reachable).arg(receiver->port()).arg(*begin);
    } catch (const Failure &failure) {
        failHere(QString::fromUtf8(failure.what()));
        return {};
    }
}

void ExportRun::endFile(const QString &name, bool isSuccess)
{
    Q_EMIT si_alive();
    ExportedFile &ended = file(name);
    if (ended.isWhole)
        return; // it was not wanted
    if (!receiver)
        return fail(QStringLiteral("The device has not sent %1.").arg(name));
    if (isSuccess)
        receiver->drain(way.patience);
    const QString problem = std::exchange(receiver, nullptr)->complaint();
    if (!problem.isEmpty())
        return failHere(problem);
    if (!isSuccess)
        return fail(QStringLiteral("The device has not sent %1.").arg(name));
    try {
        finish(ended);
    } catch (const Failure &failure) {
        failHere(QString::fromUtf8(failure.what()));
    }
    Q_EMIT si_alive(); // comparing a checksum takes its time
}

void ExportRun::finish(ExportedFile &ended)
{
    const bool isDescription = ExportFolder::isDescription(ended.name);
    if (!isDescription && !isOfTheRecord(folder.partPath(ended.name), ended))
        return;
    ended.isWhole = folder.finish(ended.name, ended.size);
    if (!ended.isWhole)
        fail(QStringLiteral("%1 did not come whole.").arg(ended.name));
    else if (isDescription)
        checksum = folder.toldChecksum(ended.name);
}

std::optional<quint64> ExportRun::bytesThere(const QString &name, quint64 size) const
{
    const bool isComparable = !checksum.isEmpty() && !ExportFolder::isDescription(name); // which changes
    return isComparable && resume == Resume::WhereItEnded ? folder.bytesThere(name, size) : 0;
}

bool ExportRun::isOfTheRecord(const QString &path, const ExportedFile &file)
{
    if (checksum.isEmpty() || !ExportFolder::isWholeAt(path, file.size) || ExportFolder::hasChecksum(path, checksum))
        return true;
    hasWrongBeginning = hasWrongBeginning || file.begin > 0;
    failHere(QStringLiteral("%1 does not have the checksum that the description of the record tells.").arg(path));
    return false;
}

void ExportRun::end(bool isSuccess, const QString &text)
{
    for (ExportedFile &exportedFile : exported)
        if (exportedFile.isWhole && exportedFile.begin == exportedFile.size && exportedFile.size > 0)
            exportedFile.isWhole = isOfTheRecord(folder.path(exportedFile.name), exportedFile);
    over = true;
    if (!isSuccess && !hasFailedHere)
        reason = QStringList{reason, QStringLiteral("The manager says: %1.").arg(text)}.join(u' ').trimmed();
    Q_EMIT si_over();
}

QString ExportRun::complaint() const
{
    if (!reason.isEmpty())
        return reason;
    for (const QString &name : announced) {
        const bool isThere = std::any_of(exported.begin(), exported.end(), [&](const ExportedFile &exportedFile) {
            return exportedFile.name == name && exportedFile.isWhole;
        });
        if (!isThere)
            return QStringLiteral("%1 did not come.").arg(name);
    }
    return exported.isEmpty() ? QStringLiteral("No file came.") : QString();
}

ExportedFile &ExportRun::file(const QString &name)
{
    const auto found = std::find_if(exported.begin(), exported.end(),
                                    [&](const ExportedFile &exportedFile) { return exportedFile.name == name; });
    if (found != exported.end())
        return *found;
    exported << ExportedFile{name};
    return exported.last();
}

void ExportRun::fail(const QString &sentence)
{
    if (reason.isEmpty())
        reason = sentence; // the first is the cause of the others
}

void ExportRun::failHere(const QString &sentence)
{
    hasFailedHere = hasFailedHere || reason.isEmpty();
    fail(sentence);
}

} // namespace korvectl
