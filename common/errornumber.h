#pragma once

/// The error numbers of the command handlers that do not depend on the kind of an exception.
namespace korve::errornumber
{

inline constexpr unsigned long success = 0;
inline constexpr unsigned long noInterface = 5;            ///< the handler could not get its interface
inline constexpr unsigned long serverNotAvailable = 101;   ///< the handler has no connection to a manager
inline constexpr unsigned long transient = 210;            ///< CORBA::TRANSIENT
inline constexpr unsigned long systemException = 211;      ///< any other exception of the ORB
inline constexpr unsigned long unknownUserException = 212; ///< by its type or its kind
inline constexpr unsigned long unspecified = 7000;

} // namespace korve::errornumber
