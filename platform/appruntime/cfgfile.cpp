#include "appruntime/cfgfile.h"

#include "coresupport/trace.h"

#include <QFileInfo>
#include <QSettings>

#include <algorithm>
#include <array>

namespace
{
constexpr char sourceName[] = "appruntime/cfgfile";
constexpr QLatin1String byteOrderMark("\xef\xbb\xbf", 3); // its bytes, as QSettings reads keys

struct FlagWord {
    const char *word;
    bool flag;
};
constexpr std::array flagWords{FlagWord{"true", true},   FlagWord{"1", true},  FlagWord{"yes", true},
                               FlagWord{"false", false}, FlagWord{"0", false}, FlagWord{"no", false}};

[[noreturn]] void fail(const QString &path, const QString &reason)
{
    const QString text = QStringLiteral("%1: %2").arg(path, reason);
    // The catcher's own trace does not say why.
    traceAt(TraceLevel::Normal, sourceName, [&] { return text; });
    throw CfgError(text.toStdString());
}

/// A pipe or a device would keep the reader waiting.
const QString &checkedPath(const QString &path)
{
    const QFileInfo file(path);
    if (file.exists() && !file.isFile())
        fail(path, QStringLiteral("is not a file"));
    if (file.exists() && !file.isReadable())
        fail(path, QStringLiteral("cannot be read"));
    return path;
}
} // namespace

CfgFile::CfgFile(const QString &path, const QString &group)
    : path(path), settings(std::make_unique<QSettings>(checkedPath(path), QSettings::IniFormat))
{
    settings->setIniCodec("UTF-8");
    const QStringList keys = settings->allKeys(); // reads all groups, so that faults are known now
    checkStatus("cannot be read");
    // QSettings takes it for a part of the first key, which would then be missing.
    if (std::any_of(keys.begin(), keys.end(), [](const QString &key) { return key.startsWith(byteOrderMark); }))
        fail(path, QStringLiteral("begins with a byte order mark; save it as UTF-8 without one"));
    if (!group.isEmpty())
        settings->beginGroup(group);
}

CfgFile::~CfgFile() = default;

void CfgFile::setText(const QString &key, const QString &text)
{
    // QSettings encodes character by character and so loses those that take two; as bytes they survive.
    const bool hasPairs = std::any_of(text.begin(), text.end(), [](QChar c) { return c.isSurrogate(); });
    settings->setValue(key, hasPairs ? QVariant(text.toUtf8()) : QVariant(text));
}

void CfgFile::setFlag(const QString &key, bool flag)
{
    settings->setValue(key, flag);
}

void CfgFile::save()
{
    settings->sync();
    checkStatus("cannot be written");
}

QString CfgFile::text(const QString &key, const QString &defaultText) const
{
    const QVariant value = settings->value(key);
    if (value.type() != QVariant::StringList && value.type() != QVariant::List)
        return value.canConvert<QString>() ? value.toString() : defaultText;
    const QString joined = value.toStringList().join(QLatin1String(", "));
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("%1: '%2' has commas outside of quotation marks and is taken as \"%3\"")
            .arg(path, key, joined);
    });
    return joined;
}

bool CfgFile::flag(const QString &key, bool defaultFlag) const
{
    if (!settings->contains(key))
        return defaultFlag;
    const QString word = text(key, QString()).trimmed();
    for (const FlagWord &known : flagWords) {
        if (word.compare(QLatin1String(known.word), Qt::CaseInsensitive) == 0)
            return known.flag;
    }
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("%1: '%2' is neither true nor false: \"%3\"").arg(path, key, word); });
    return defaultFlag;
}

void CfgFile::checkStatus(const char *failure) const
{
    if (settings->status() == QSettings::AccessError)
        fail(path, QLatin1String(failure));
    if (settings->status() == QSettings::FormatError)
        fail(path, QStringLiteral("is not a proper INI file"));
}
