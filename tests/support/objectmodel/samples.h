#pragma once

#include "tests/support/objectmodel/schema.h"

#include <QDateTime>
#include <QVector>

#include <type_traits>

namespace REPORTGENERATOR
{
class IRGObject;
}

namespace modeltest
{

/// Where a sample value belongs: every member of every class has its own, and every item of a list another.
struct Place {
    QString className;
    QString member;
    int seed = 0;

    Place item(int index) const { return {className, member, seed + 1 + index}; }
};

// All samples pass every rule and survive every form unchanged: texts hold what XML must escape, fractions have two
// decimals, big numbers need more than 32 bits, small ones fit the narrowest range.
QString sampleText(const Place &place);
qint32 sampleSmallNumber(const Place &place);
qint64 sampleBigNumber(const Place &place);
double sampleFraction(const Place &place);
bool sampleFlag(const Place &place);
QDateTime sampleTime(const Place &place);
int sampleLiteral(const Place &place);

constexpr int sampleListSize = 2;

/// The sample of @p member's kind as its XML text; not for objects.
QString sampleAsText(const Place &place, const Member &member);

/// Gives every member its sample, of a choice the first alternative.
void fill(REPORTGENERATOR::IRGObject &object, int seed = 0);

template <class T> constexpr bool isVector = false;
template <class T> constexpr bool isVector<QVector<T>> = true;

template <class T> T sample(const Place &place)
{
    if constexpr (isVector<T>) {
        T items;
        for (int index = 0; index < sampleListSize; ++index)
            items.append(sample<typename T::value_type>(place.item(index)));
        return items;
    } else if constexpr (std::is_base_of_v<REPORTGENERATOR::IRGObject, T>) {
        T object;
        fill(object, place.seed);
        return object;
    } else if constexpr (std::is_enum_v<T>) {
        return static_cast<T>(sampleLiteral(place));
    } else if constexpr (std::is_same_v<T, QString>) {
        return sampleText(place);
    } else if constexpr (std::is_same_v<T, bool>) {
        return sampleFlag(place);
    } else if constexpr (std::is_same_v<T, double>) {
        return sampleFraction(place);
    } else if constexpr (std::is_same_v<T, QDateTime>) {
        return sampleTime(place);
    } else {
        static_assert(std::is_integral_v<T>);
        return static_cast<T>(sizeof(T) == 8 ? sampleBigNumber(place) : sampleSmallNumber(place));
    }
}

} // namespace modeltest
