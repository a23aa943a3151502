#pragma once

#include "tests/support/objectmodel/schema.h"

namespace modeltest
{

/// The lines of an outline while it grows.
class OutlineLines
{
public:
    void value(const QString &path, const QString &text) { lines << path + " = " + text; }
    /// Something that the tables do not allow.
    void flaw(const QString &path, const QString &text) { lines << path + ": " + text; }
    std::string text() const { return lines.join('\n').toStdString(); }

private:
    QStringList lines;
};

inline QString itemPath(const QString &path, int index)
{
    return QStringLiteral("%1[%2]").arg(path, QString::number(index));
}

/// True for the one class that carries the version of its format ahead of its members.
inline bool hasVersion(const ClassSchema &type)
{
    return type.name == "FilterConditionList";
}

constexpr quint32 versionTag = 0xccfedfa1;

} // namespace modeltest
