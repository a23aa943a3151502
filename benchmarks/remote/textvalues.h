#pragma once

#include <QString>

/// What the snapshots carry: 100 000 text values, ten below each node.
namespace texts
{

constexpr int count = 100000;
constexpr char top[] = "/Snapshot";

inline QString nodePath(int number)
{
    return QStringLiteral("/Device/HB145-%1/Channel/%2")
        .arg(QString::number(number / 1000), QString::number(number / 10));
}
inline QString name(int number)
{
    return QStringLiteral("Value%1").arg(number % 10);
}
inline QString path(int number)
{
    return nodePath(number) + u'/' + name(number);
}
inline QString content(int number)
{
    return QStringLiteral("a text of value %1").arg(number);
}

} // namespace texts
