#include "objectbase/exceptions.h"

namespace REPORTGENERATOR
{

ReportException::ReportException(const QString &kind, const QString &message)
    : kind(kind), message(message), text((kind + QLatin1String(": ") + message).toUtf8())
{
}

RGException::RGException(const QString &message) : RGException(QStringLiteral("RGException"), message) {}

RGException::RGException(const QString &kind, const QString &message) : ReportException(kind, message) {}

OutOfRangeException::OutOfRangeException(const QString &message)
    : RGException(QStringLiteral("OutOfRangeException"), message)
{
}

IncompleteDefinitionException::IncompleteDefinitionException(const QString &message)
    : RGException(QStringLiteral("IncompleteDefinitionException"), message)
{
}

InvalidXmlException::InvalidXmlException(const QString &message)
    : RGException(QStringLiteral("InvalidXmlException"), message)
{
}

BinaryParsingException::BinaryParsingException(const QString &message)
    : RGException(QStringLiteral("BinaryParsingException"), message)
{
}

ReportException::~ReportException() = default;
RGException::~RGException() = default;
OutOfRangeException::~OutOfRangeException() = default;
IncompleteDefinitionException::~IncompleteDefinitionException() = default;
InvalidXmlException::~InvalidXmlException() = default;
BinaryParsingException::~BinaryParsingException() = default;

} // namespace REPORTGENERATOR
