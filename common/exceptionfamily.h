#pragma once

#include <omniORB4/CORBA.h>

#include <QString>

#include <cstring>
#include <span>

/// What a user exception of a known type carries.
struct RaisedKind {
    unsigned long kind;
    const char *text; ///< borrowed from the exception, UTF-8
};

/// What is known of one type of user exception.
struct ExceptionFamily {
    /// False when @p e is of another type.
    bool (*recognise)(const CORBA::UserException &e, RaisedKind &raised);
    unsigned long firstNumber; ///< the error number of kind 0; the others follow
    const char *scopedName;
    std::span<const char *const> kinds; ///< in the order of the wire
    const char *unknownKind;            ///< the line of a kind that is not among them
};

/// The error number of @p e by the first of @p families that knows its type, else 212.
unsigned long errorNumber(const CORBA::UserException &e, std::span<const ExceptionFamily> families) noexcept;
/// The line of @p e by the first of @p families that knows its type.
QString exceptionLine(const CORBA::UserException &e, std::span<const ExceptionFamily> families);

/// The number that stands in @p kind; it need not be one of the enumeration's, which must then not be read as such.
template <class Kind> unsigned long numberOf(const Kind &kind)
{
    unsigned int number = 0;
    static_assert(sizeof kind == sizeof number);
    std::memcpy(&number, &kind, sizeof number);
    return number;
}

/// `recognise` of an exception that has a kind and a text.
template <class Exception> bool recogniseAs(const CORBA::UserException &e, RaisedKind &raised)
{
    const auto *const narrowed = Exception::_downcast(&e);
    if (narrowed)
        raised = {numberOf(narrowed->kind), narrowed->text.in()};
    return narrowed;
}
