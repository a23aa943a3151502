#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace installation::recorder
{

/// Strict access to the members of a JSON object that came from outside.
///
/// Errors: throws RecorderError (`ekRECORD_CORRUPTED`) that names the member.
class JsonMembers
{
public:
    explicit JsonMembers(QJsonObject object) : object(std::move(object)) {}
    /// The object that @p bytes hold. @p name is that of the file.
    static QJsonObject document(const QByteArray &bytes, const QString &name);
    /// How count() reads it: JSON's own numbers are exact to 2^53 only.
    static QString fromCount(quint64 count) { return QString::number(count); }

    bool has(const QString &key) const { return object.contains(key); }
    QString text(const QString &key) const;
    bool truth(const QString &key) const;
    double number(const QString &key) const;
    /// A number of 64 bits, written as text.
    quint64 count(const QString &key) const;
    QJsonObject members(const QString &key) const;
    /// The elements of a list of objects; none when there is no such list.
    QVector<QJsonObject> list(const QString &key) const;

private:
    [[noreturn]] void refuse(const QString &key, const char *expectation) const;

    const QJsonObject object;
};

} // namespace installation::recorder
