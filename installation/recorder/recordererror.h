#pragma once

#include "idl/korve.hh"

#include <QByteArray>
#include <QString>

#include <exception>

namespace installation::recorder
{

/// Why the recorder could not do something, in the terms of its contract.
class RecorderError : public std::exception
{
public:
    enum class Outcome { NotDone, Unknown };

    RecorderError(TQ_KORVE::eKorveKind kind, const QString &text, Outcome outcome = Outcome::NotDone)
        : errorKind(kind), utf8(text.toUtf8()), outcome(outcome)
    {
    }
    /// For a system call that left @p error in `errno` when we tried to do @p action.
    static RecorderError ofSystem(int error, const QString &action);

    /// The same of another kind.
    RecorderError as(TQ_KORVE::eKorveKind kind) const { return {kind, text(), outcome}; }

    TQ_KORVE::eKorveKind kind() const { return errorKind; }
    QString text() const { return QString::fromUtf8(utf8); }
    /// It has been begun, and may still be done.
    bool isOutcomeUnknown() const { return outcome == Outcome::Unknown; }
    const char *what() const noexcept override { return utf8.constData(); }

private:
    TQ_KORVE::eKorveKind errorKind;
    QByteArray utf8;
    Outcome outcome;
};

} // namespace installation::recorder
