#include "installation/recorder/jsonmembers.h"

#include "installation/recorder/recordererror.h"

#include <QJsonDocument>
#include <QVector>

namespace installation::recorder
{

QJsonObject JsonMembers::document(const QByteArray &bytes, const QString &name)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (!document.isObject()) {
        const QString reason = error.error == QJsonParseError::NoError ? QStringLiteral("not a JSON object")
                                                                       : error.errorString();
        throw RecorderError(TQ_KORVE::ekRECORD_CORRUPTED,
                            QStringLiteral("%1 at byte %2: %3").arg(name, QString::number(error.offset), reason));
    }
    return document.object();
}

QString JsonMembers::text(const QString &key) const
{
    const QJsonValue value = object.value(key);
    if (!value.isString())
        refuse(key, "a text");
    return value.toString();
}

bool JsonMembers::truth(const QString &key) const
{
    const QJsonValue value = object.value(key);
    if (!value.isBool())
        refuse(key, "true or false");
    return value.toBool();
}

double JsonMembers::number(const QString &key) const
{
    const QJsonValue value = object.value(key);
    if (!value.isDouble())
        refuse(key, "a number");
    return value.toDouble();
}

quint64 JsonMembers::count(const QString &key) const
{
    bool readable = false;
    const quint64 count = text(key).toULongLong(&readable);
    if (!readable)
        refuse(key, "a number written as text");
    return count;
}

QJsonObject JsonMembers::members(const QString &key) const
{
    const QJsonValue value = object.value(key);
    if (!value.isObject())
        refuse(key, "an object");
    return value.toObject();
}

QVector<QJsonObject> JsonMembers::list(const QString &key) const
{
    QVector<QJsonObject> elements;
    if (!has(key))
        return elements;
    if (!object.value(key).isArray())
        refuse(key, "a list of objects");
    for (const QJsonValue element : object.value(key).toArray()) {
        if (!element.isObject())
            refuse(key, "a list of objects");
        elements.append(element.toObject());
    }
    return elements;
}

void JsonMembers::refuse(const QString &key, const char *expectation) const
{
    throw RecorderError(TQ_KORVE::ekRECORD_CORRUPTED,
                        QStringLiteral("\"%1\" is missing or not %2").arg(key, QLatin1String(expectation)));
}

} // namespace installation::recorder
