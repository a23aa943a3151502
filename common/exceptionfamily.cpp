#include "common/exceptionfamily.h"

#include "common/errornumber.h"

namespace
{

const ExceptionFamily *familyOf(const CORBA::UserException &e, std::span<const ExceptionFamily> families,
                                RaisedKind &raised)
{
    for (const ExceptionFamily &family : families) {
        if (family.recognise(e, raised))
            return &family;
    }
    return nullptr;
}

} // namespace

unsigned long errorNumber(const CORBA::UserException &e, std::span<const ExceptionFamily> families) noexcept
{
    RaisedKind raised{};
    const ExceptionFamily *const family = familyOf(e, families, raised);
    if (!family || raised.kind >= family->kinds.size())
        return korve::errornumber::unknownUserException;
    return family->firstNumber + raised.kind;
}

QString exceptionLine(const CORBA::UserException &e, std::span<const ExceptionFamily> families)
{
    const QString prefix = QStringLiteral("User exception: ");
    RaisedKind raised{};
    const ExceptionFamily *const family = familyOf(e, families, raised);
    if (!family)
        return prefix + QLatin1String("undefined");
    if (raised.kind >= family->kinds.size())
        return prefix + QLatin1String(family->unknownKind);
    return prefix + QLatin1String(family->scopedName) + QLatin1String("::") +
           QLatin1String(family->kinds[raised.kind]) + QLatin1String(": ") + QString::fromUtf8(raised.text);
}
