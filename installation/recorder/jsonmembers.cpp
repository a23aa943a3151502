#include "installation/recorder/jsonmembers.h"

#include "installation/recorder/recordererror.h"

#include <QJsonDocument>
#include <QVector>

#include <algorithm>

namespace installation::recorder
{

namespace
{

/// Qt sorts members with such a name otherwise than it looks for them, so that others are not found any more.
bool hasNulInName(const QJsonValue &value)
{
    if (value.isArray()) {
        const QJsonArray list = value.toArray();
        return std::any_of(list.begin(), list.end(), hasNulInName);
    }
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member)
        if (member.key().contains(QChar::Null) || hasNulInName(member.value()))
            return true;
    return false;
}

} // namespace

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
    if (hasNulInName(document.object()))
        throw RecorderError(TQ_KORVE::ekRECORD_CORRUPTED,
                            QStringLiteral("%1: the name of a member holds a NUL character").arg(name));
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
