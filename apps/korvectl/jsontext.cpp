#include "apps/korvectl/jsontext.h"

#include <QDateTime>
#include <QJsonDocument>

namespace korvectl
{

QString jsonText(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson());
}

QString jsonText(const QJsonArray &array)
{
    return QString::fromUtf8(QJsonDocument(array).toJson());
}

QString jsonLine(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) + u'\n';
}

QString eventLine(const char *event, QJsonObject object)
{
    object.insert(QStringLiteral("event"), QLatin1String(event));
    object.insert(QStringLiteral("time"), QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs));
    return jsonLine(object);
}

QJsonValue jsonTime(quint64 us)
{
    return static_cast<qint64>(us);
}

QJsonValue jsonNumber(quint64 number)
{
    constexpr quint64 mostExact = quint64{1} << 53;
    return number <= mostExact ? QJsonValue(static_cast<qint64>(number)) : QJsonValue(QString::number(number));
}

} // namespace korvectl
