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
        const std::optional<quint64> begin = folder.bytesThere(name, size);
        file(name) = {name, size, begin.value_or(size), !begin};
        if (!begin)
            return {};
        receiver = std::make_unique<FileReceiver>(folder.partPath(name), *begin, size, address.listening);
        connect(receiver.get(), &FileReceiver::si_received, this, [this, name] {
            Q_EMIT si_alive();
            Q_EMIT si_progress(name, receiver->received(), receiver->size());
        });
        return QStringLiteral("%1:%2/%3").arg(address.reachable).arg(receiver->port()).arg(*begin);
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
        receiver->drain(patience);
    const QString problem = std::exchange(receiver, nullptr)->complaint();
    if (!problem.isEmpty())
        return failHere(problem);
    if (!isSuccess)
        return fail(QStringLiteral("The device has not sent %1.").arg(name));
    try {
        ended.isWhole = folder.finish(name, ended.size);
    } catch (const Failure &failure) {
        return failHere(QString::fromUtf8(failure.what()));
    }
    if (!ended.isWhole)
        fail(QStringLiteral("%1 did not come whole.").arg(name));
}

void ExportRun::end(bool isSuccess, const QString &text)
{
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
