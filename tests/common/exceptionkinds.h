#pragma once

#include <QString>
#include <QVector>

#include <omniORB4/CORBA.h>

#include <memory>
#include <ostream>

/// One kind of a user exception, as typed by hand in tests/data/exceptions.
struct ExceptionKind {
    QString exception; ///< scoped name
    long kind;         ///< on the wire
    QString word;
    unsigned long errorNumber;
};

/// The two groups of calls: on a recorder, and on the manager.
enum class Family { Device, Channel };

/// A user exception and what is expected of it.
struct ExceptionCase {
    const char *name; ///< the file in tests/data/exceptions; also that of the test
    Family family;
    std::unique_ptr<CORBA::UserException> (*make)(long kind, const char *text);
    const char *outOfRange; ///< what is said of a kind that does not exist

    QVector<ExceptionKind> kinds() const;
    /// What a decoder of @p asked says of it, and its number there.
    QString text(Family asked, long kind, const QString &freeText) const;
    unsigned long number(Family asked, long kind) const;
};

void PrintTo(const ExceptionCase &exception, std::ostream *out);

/// The six that the decoders know.
const QVector<ExceptionCase> &knownExceptions();
