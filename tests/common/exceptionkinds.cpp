#include "tests/common/exceptionkinds.h"

#include "idl/korve.hh"
#include "idl/korvemanager.hh"
#include "idl/lumbalandatacom.hh"

#include <QFile>
#include <QStringList>

#include <cstring>
#include <stdexcept>

namespace
{
constexpr unsigned long unknownException = 212;

/// The kind may be none of the enumeration's, so it is put into the exception byte by byte.
template <typename Exception> std::unique_ptr<CORBA::UserException> made(long kind, const char *text)
{
    auto exception = std::make_unique<Exception>();
    const int number = static_cast<int>(kind);
    static_assert(sizeof exception->kind == sizeof number);
    std::memcpy(&exception->kind, &number, sizeof number);
    exception->text = CORBA::string_dup(text);
    return exception;
}

ExceptionKind kindOf(const QString &line)
{
    const QStringList words = line.split(u'\t');
    if (words.size() != 4)
        throw std::runtime_error("unreadable line: " + line.toStdString());
    return {words.at(0), words.at(1).toLong(), words.at(2), words.at(3).toULong()};
}
} // namespace

QVector<ExceptionKind> ExceptionCase::kinds() const
{
    QFile file(QStringLiteral(EXCEPTION_KINDS "/%1.txt").arg(QLatin1String(name)));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no table " + file.fileName().toStdString());
    QVector<ExceptionKind> rows;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines)
        if (!line.startsWith(u'#'))
            rows.append(kindOf(line));
    return rows;
}

QString ExceptionCase::text(Family asked, long kind, const QString &freeText) const
{
    const QString head = QStringLiteral("User exception: ");
    if (asked != family)
        return head + QStringLiteral("undefined");
    for (const ExceptionKind &row : kinds())
        if (row.kind == kind)
            return head + row.exception + QStringLiteral("::") + row.word + QStringLiteral(": ") + freeText;
    return head + QLatin1String(outOfRange);
}

unsigned long ExceptionCase::number(Family asked, long kind) const
{
    if (asked == family)
        for (const ExceptionKind &row : kinds())
            if (row.kind == kind)
                return row.errorNumber;
    return unknownException;
}

void PrintTo(const ExceptionCase &exception, std::ostream *out)
{
    *out << exception.name;
}

const QVector<ExceptionCase> &knownExceptions()
{
    static const QVector<ExceptionCase> exceptions{
        {"exgen", Family::Channel, made<TQ_KRV::exGen>, "undefined TQ_KRV:exGen exception"}, // one colon: so it is
        {"exchanman", Family::Channel, made<TQ_KRV::IF_KRV_c_ChanMan::exChanMan>,
         "undefined TQ_KRV::IF_KRV_c_ChanMan::exChanMan exception"},
        {"exchan", Family::Channel, made<TQ_KRV::IF_KRV_c_Chan::exChan>,
         "undefined TQ_KRV::IF_KRV_c_Chan::exChan exception"},
        {"exadmin", Family::Channel, made<TQ_KRV::IF_KORVE_Admin::exAdmin>, "undefined"},
        {"exkorve", Family::Device, made<TQ_KORVE::exKorve>, "undefined TQ_KORVE:exKorve exception"},
        {"exlldc", Family::Device, made<LLDCmodule::exLLDC>, "undefined"},
    };
    return exceptions;
}
