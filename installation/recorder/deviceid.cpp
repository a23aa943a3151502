#include "installation/recorder/deviceid.h"

#include "installation/recorder/file.h"
#include "installation/recorder/recordererror.h"

#include "coresupport/trace.h"

#include <QDir>

#include <algorithm>

namespace installation::recorder
{

namespace
{

constexpr const char *sourceName = "installation/recorder/deviceid";
constexpr qint64 longestId = 1000;

QString fileIn(const QString &statePath)
{
    return statePath + QLatin1String("/device");
}

QString storedId(const QString &path)
{
    const QString id = QString::fromUtf8(readWhole(path, longestId)).trimmed();
    if (!isDeviceId(id))
        throw RecorderError(TQ_KORVE::ekINVALID_CONFIGURATION, QStringLiteral("%1 holds no device id").arg(path));
    return id;
}

bool isKept(const QString &path, const QString &id)
{
    try {
        return storedId(path) == id;
    } catch (const RecorderError &) {
        return false; // there is none, or a damaged one
    }
}

bool hasRecordings(const QString &statePath)
{
    const QDir recordings(statePath + QLatin1String("/recordings"));
    return !recordings.entryList({QStringLiteral("*.sigmf-meta")}).isEmpty();
}

} // namespace

bool isDeviceId(const QString &text)
{
    return !text.isEmpty() && std::all_of(text.cbegin(), text.cend(), [](QChar character) {
        return character > u' ' && character < u'\x7f' && character != u'/';
    });
}

QString deviceIdOf(const QString &statePath, const QString &address)
{
    const QString path = fileIn(statePath);
    if (QFileInfo::exists(path))
        return storedId(path);
    return hasRecordings(statePath) ? QStringLiteral("KORVE1") : QStringLiteral("KORVE-") + address;
}

void keepDeviceId(const QString &statePath, const QString &id)
{
    const QString path = fileIn(statePath);
    const QString part = path + QLatin1String(".part");
    try {
        if (isKept(path, id))
            return;
        writeWhole(part, id.toUtf8() + '\n');
        renameFile(part, path);
        syncFolder(statePath);
    } catch (const RecorderError &error) {
        traceAt(TraceLevel::Normal, sourceName,
                [&] { return QStringLiteral("The device id %1 is not kept: %2").arg(id, error.text()); });
    }
}

} // namespace installation::recorder
