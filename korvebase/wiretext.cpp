#include "korvebase/wiretext.h"

#include <algorithm>
#include <cwchar>

namespace KorveCommon::wire
{

QString text(const CORBA::WChar *wide)
{
    const auto length = static_cast<int>(std::wcslen(wide));
    QString result(length, Qt::Uninitialized);
    unsigned seen = 0;
    std::transform(wide, wide + length, result.begin(), [&](CORBA::WChar character) {
        seen |= static_cast<unsigned>(character);
        return QChar(static_cast<ushort>(character));
    });
    // Narrowing is several times faster than fromWCharArray, which alone knows about characters beyond 16 bits and a
    // byte order mark in front.
    const bool isPlain = seen <= 0xFFFF && wide[0] != QChar::ByteOrderMark;
    return isPlain ? result : QString::fromWCharArray(wide, length);
}

QString text(const TQ_KORVE::wideText &units)
{
    QString result(static_cast<int>(units.length()), Qt::Uninitialized);
    std::transform(units.get_buffer(), units.get_buffer() + units.length(), result.begin(),
                   [](CORBA::UShort unit) { return QChar(unit); });
    return result;
}

CORBA::WChar *wideText(const QString &text)
{
    // Not toStdWString: a wide character beyond 16 bits is refused by the ORB.
    CORBA::WChar *wide = CORBA::wstring_alloc(static_cast<CORBA::ULong>(text.size()));
    *std::transform(text.cbegin(), text.cend(), wide, [](QChar unit) { return CORBA::WChar(unit.unicode()); }) = 0;
    return wide;
}

QString identifier(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

char *latin1(const QString &identifier)
{
    return CORBA::string_dup(identifier.toLatin1().constData());
}

} // namespace KorveCommon::wire
