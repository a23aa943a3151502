#include "installation/recorder/filetime.h"

#include "installation/recorder/file.h"

#include <QDateTime>
#include <QRegularExpression>

namespace installation::recorder
{

quint64 modificationTimeUs(const QString &path)
{
    const timespec time = fileStatus(path).st_mtim;
    return time.tv_sec < 0 ? 0 : quint64(time.tv_sec) * 1'000'000 + time.tv_nsec / 1000;
}

QString toSigmfTime(quint64 timeUs)
{
    const QDateTime seconds = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(timeUs / 1'000'000), Qt::UTC);
    return QStringLiteral("%1.%2Z").arg(seconds.toString(QStringLiteral("yyyy-MM-ddThh:mm:ss")),
                                        QString::number(timeUs % 1'000'000).rightJustified(6, QLatin1Char('0')));
}

std::optional<quint64> fromSigmfTime(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("^(\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d)(?:\\.(\\d{1,30}))?Z$"));
    const QRegularExpressionMatch match = form.match(text);
    QDateTime seconds = QDateTime::fromString(match.captured(1), Qt::ISODate);
    seconds.setTimeSpec(Qt::UTC);
    if (!match.hasMatch() || !seconds.isValid() || seconds.toSecsSinceEpoch() < 0)
        return {};
    const QString fraction = match.captured(2).left(6).leftJustified(6, QLatin1Char('0'));
    return quint64(seconds.toSecsSinceEpoch()) * 1'000'000 + fraction.toUInt();
}

QString whyNoSigmfTime(const QString &text)
{
    static const QRegularExpression offset(QStringLiteral("[+-]\\d\\d:?\\d\\d$"));
    const int begin = text.indexOf(offset);
    if (fromSigmfTime(text + QLatin1Char('Z')))
        return QStringLiteral("which has no \"Z\" at its end, so that nobody knows its zone");
    if (begin > 0 && fromSigmfTime(text.left(begin) + QLatin1Char('Z')))
        return QStringLiteral("which has an offset from UTC instead of \"Z\"");
    return QStringLiteral("which is no time since 1970");
}

} // namespace installation::recorder
