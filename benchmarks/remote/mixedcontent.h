#pragma once

#include <QString>

/// What the updates of `mirror.updates` and `mirror.conflict` set: 600 values, 100 of each of six types, in turn. Update
/// number n, from 0, goes to value n % 600 and changes it.
namespace mixed
{

constexpr int typeCount = 6;
constexpr int valueCount = 600;
constexpr int updatesPerRound = 100000;

/// The last update of value @p index, when all up to, not with, @p end have been made.
constexpr int lastUpdate(int index, int end)
{
    return end - 1 - (end - 1 - index) % valueCount;
}

inline QString text(int update)
{
    return QStringLiteral("state of update %1").arg(update);
}
inline int number(int update)
{
    return update + 1;
}
inline double real(int update)
{
    return 98.5 + update / 8.0;
}
inline bool flag(int update)
{
    return update / valueCount % 2 == 0;
}
inline qint64 stamp(int update)
{
    return 1772366400000000 + update;
}
inline unsigned count(int update)
{
    return static_cast<unsigned>(update) + 1;
}

} // namespace mixed
