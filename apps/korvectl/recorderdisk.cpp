#include "apps/korvectl/recorderdisk.h"

#include "apps/korvectl/units.h"

#include <QStringList>

#include <algorithm>

namespace korvectl
{

namespace
{

QString textOf(const TQ_KORVE::wideText &units)
{
    QString text;
    for (CORBA::ULong position = 0; position < units.length(); ++position)
        text += QChar(static_cast<ushort>(units[position]));
    return text;
}

} // namespace

bool RefusedFile::isOfRecord() const
{
    return name.endsWith(QLatin1String(".sigmf-meta")) || name.endsWith(QLatin1String(".sigmf-data"));
}

QVector<RefusedFile> refusedFiles(TQ_KORVE::IF_Control_ptr recorder)
{
    QVector<RefusedFile> files;
    try {
        const TQ_KORVE::seqMETA_DATA_var told = recorder->listAllRecordsOnArchDev("refused:");
        for (CORBA::ULong position = 0; position < told->length(); ++position)
            files << RefusedFile{QString::fromUtf8(told.in()[position].recordID),
                                 textOf(told.in()[position].recordName)};
    } catch (const TQ_KORVE::exKorve &) { // a recorder of another kind
    }
    return files;
}

QString namesOf(const QVector<RefusedFile> &files)
{
    constexpr int most = 3;
    QStringList words;
    for (int position = 0; position < std::min(most, files.size()); ++position)
        words << QStringLiteral("%1 (%2)").arg(files[position].name, files[position].reason);
    const QString first = words.join(QLatin1String(", "));
    return files.size() <= most ? first : QStringLiteral("%1 and %2 more").arg(first).arg(files.size() - most);
}

QString wordsFor(const TQ_KORVE::struMASS_STORE_STATUS &storage)
{
    const QString room =
        QStringLiteral("%1 of %2 are free").arg(units::bytes(storage.freeSize), units::bytes(storage.totalSize));
    return storage.units.length() == 0
               ? room
               : QStringLiteral("%1: %2").arg(QString::fromUtf8(storage.units[0].unitName), room);
}

bool hasRoom(const TQ_KORVE::struMASS_STORE_STATUS &storage)
{
    return storage.freeSize >= leastFreeBytes;
}

} // namespace korvectl
