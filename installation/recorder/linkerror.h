#pragma once

#include "idl/lumbalandatacom.hh"

#include <QByteArray>
#include <QString>

#include <exception>

namespace installation::recorder
{

/// Why a network link of a session could not do something, in the terms of its contract.
class LinkError : public std::exception
{
public:
    LinkError(LLDCmodule::eLLDCKind kind, const QString &text) : errorKind(kind), utf8(text.toUtf8()) {}
    /// For a system call that left @p error in `errno` when we tried to do @p action: `ekDataStreamUnavailable` when the
    /// other end has gone, else @p otherwise.
    static LinkError ofSystem(int error, const QString &action, LLDCmodule::eLLDCKind otherwise);

    LLDCmodule::eLLDCKind kind() const { return errorKind; }
    QString text() const { return QString::fromUtf8(utf8); }
    const char *what() const noexcept override { return utf8.constData(); }

private:
    LLDCmodule::eLLDCKind errorKind;
    QByteArray utf8;
};

} // namespace installation::recorder
