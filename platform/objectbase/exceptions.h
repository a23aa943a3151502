#pragma once

#include "objectbase/objectbase_export.h"

#include <QByteArray>
#include <QString>

#include <exception>

namespace REPORTGENERATOR
{

/// Root of what value objects throw. It carries two texts: the kind of failure and the message for a person.
class OBJECTBASE_EXPORT ReportException : public std::exception
{
public:
    ReportException(const QString &kind, const QString &message);
    ReportException(const ReportException &) = default;
    ReportException &operator=(const ReportException &) = default;
    ~ReportException() override;

    /// The class of the failure in one word, such as "OutOfRangeException".
    const QString &GetKind() const { return kind; }
    const QString &GetMessage() const { return message; }
    /// Kind and message in UTF-8.
    const char *what() const noexcept override { return text.constData(); }

private:
    QString kind;
    QString message;
    QByteArray text;
};

/// What every failure of a value object is at least.
class OBJECTBASE_EXPORT RGException : public ReportException
{
public:
    explicit RGException(const QString &message);
    ~RGException() override;

protected:
    RGException(const QString &kind, const QString &message);
};

/// A value lies outside of what its member accepts.
class OBJECTBASE_EXPORT OutOfRangeException : public RGException
{
public:
    explicit OutOfRangeException(const QString &message);
    ~OutOfRangeException() override;
};

/// Something mandatory is missing.
class OBJECTBASE_EXPORT IncompleteDefinitionException : public RGException
{
public:
    explicit IncompleteDefinitionException(const QString &message);
    ~IncompleteDefinitionException() override;
};

/// An XML document holds what its object refuses.
class OBJECTBASE_EXPORT InvalidXmlException : public RGException
{
public:
    explicit InvalidXmlException(const QString &message);
    ~InvalidXmlException() override;
};

/// The bytes of a binary form do not add up.
class OBJECTBASE_EXPORT BinaryParsingException : public RGException
{
public:
    explicit BinaryParsingException(const QString &message);
    ~BinaryParsingException() override;
};

} // namespace REPORTGENERATOR
