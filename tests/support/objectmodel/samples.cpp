#include "tests/support/objectmodel/samples.h"

#include "objectbase/converters.h"
#include "tests/support/objectmodel/objectclass.h"

namespace modeltest
{
namespace
{

// FNV-1a, so that the samples are the same in every run.
quint32 number(const Place &place)
{
    quint32 hash = 2166136261u;
    for (const char byte : (place.className + '.' + place.member).toUtf8())
        hash = (hash ^ static_cast<quint8>(byte)) * 16777619u;
    return hash + static_cast<quint32>(place.seed);
}

} // namespace

QString sampleText(const Place &place)
{
    return QStringLiteral("%1.%2 <&\"'\u00fc\u20ac> %3")
        .arg(place.className, place.member, QString::number(place.seed));
}

qint32 sampleSmallNumber(const Place &place)
{
    return static_cast<qint32>(number(place) % 100 + 1);
}

qint64 sampleBigNumber(const Place &place)
{
    return (static_cast<qint64>(number(place)) << 20) + place.seed;
}

double sampleFraction(const Place &place)
{
    return number(place) % 1000 / 4.0;
}

bool sampleFlag(const Place &place)
{
    return number(place) % 2;
}

QDateTime sampleTime(const Place &place)
{
    return QDateTime(QDate(2021, 3, 4), QTime(5, 6, 7, static_cast<int>(number(place) % 1000)), Qt::UTC);
}

int sampleLiteral(const Place &place)
{
    return static_cast<int>(number(place) % 2);
}

QString sampleAsText(const Place &place, const Member &member)
{
    switch (member.kind) {
    case Kind::Text:
        return sampleText(place);
    case Kind::Int32:
    case Kind::UInt32:
        return QString::number(sampleSmallNumber(place));
    case Kind::Int64:
    case Kind::UInt64:
        return QString::number(sampleBigNumber(place));
    case Kind::Double:
        return QString::number(sampleFraction(place), 'f', 2);
    case Kind::Bool:
        return sampleFlag(place) ? "true" : "false";
    case Kind::DateTime:
        return REPORTGENERATOR::Converters::ToString(sampleTime(place));
    case Kind::Enumeration:
        return literalsOf(place.className, member.typeName).at(sampleLiteral(place));
    case Kind::Object:
        break;
    }
    qFatal("an object has no text: %s", qPrintable(member.name));
}

void fill(REPORTGENERATOR::IRGObject &object, int seed)
{
    bool chosen = false;
    for (const MemberAccess &member : objectClass(object.GetObjectName()).members) {
        if (member.alternative && chosen)
            continue;
        chosen = chosen || member.alternative;
        member.fill(object, seed);
    }
}

} // namespace modeltest
