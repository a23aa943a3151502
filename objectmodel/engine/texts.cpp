#include "objectmodel/engine/texts.h"

#include "objectmodel/engine/values.h"

#include "objectbase/converters.h"

#include <QLocale>

#include <limits>

namespace KORVE_XML::engine
{

namespace
{

/// The number of a text of at most 18 decimal digits and nothing else, or -1.
qint64 plainNumber(QStringView text)
{
    if (text.isEmpty() || text.size() > 18)
        return -1;
    qint64 number = 0;
    for (QChar character : text) {
        const uint digit = uint(character.unicode()) - '0';
        if (digit > 9)
            return -1;
        number = number * 10 + digit;
    }
    return number;
}

/// The locale behind QString's conversions, which take no group separators.
const QLocale &plainLocale()
{
    static const QLocale locale = [] {
        QLocale plain = QLocale::c();
        plain.setNumberOptions(QLocale::RejectGroupSeparator);
        return plain;
    }();
    return locale;
}

QChar lowered(QChar character)
{
    return character >= 'A' && character <= 'Z' ? QChar(character.unicode() | 0x20) : character;
}

} // namespace

QString textOf(const MemberInfo &member, const void *value)
{
    switch (member.kind) {
    case Kind::Text: return valueAt<QString>(value);
    case Kind::Boolean: return valueAt<bool>(value) ? QStringLiteral("true") : QStringLiteral("false");
    case Kind::Int32:
    case Kind::UInt32:
    case Kind::Int64: return QString::number(integerAt(member, value));
    case Kind::UInt64: return QString::number(valueAt<quint64>(value));
    case Kind::Double: return textOf(valueAt<double>(value));
    case Kind::DateTime: return REPORTGENERATOR::Converters::ToString(valueAt<QDateTime>(value));
    case Kind::Enumeration: return member.enumeration->toName(enumerationAt(value));
    case Kind::Object: break;
    }
    Q_ASSERT(false);
    return {};
}

QString textOf(double value)
{
    return QStringLiteral("%1").arg(value, 0, 'f', 2);
}

bool toBoolean(QStringView text)
{
    static constexpr char16_t no[] = u"false";
    const auto isLowered = [](QChar a, char16_t b) { return lowered(a) == QChar(b); };
    return text != QLatin1String("0") && !std::equal(text.begin(), text.end(), no, no + 5, isLowered);
}

qint32 toInt32(QStringView text)
{
    const qint64 number = toInt64(text);
    const bool fits = number >= std::numeric_limits<qint32>::min() && number <= std::numeric_limits<qint32>::max();
    return fits ? qint32(number) : 0;
}

qint64 toInt64(QStringView text)
{
    const qint64 number = plainNumber(text);
    return number >= 0 ? number : plainLocale().toLongLong(text);
}

} // namespace KORVE_XML::engine
