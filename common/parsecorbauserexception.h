#pragma once

#include "korvebase/korvebase_export.h"

#include <QString>

namespace CORBA
{
class UserException;
}

namespace KorveDevice
{

/// Decodes what the interfaces of a device raise: `TQ_KORVE::exKorve` and `LLDCmodule::exLLDC`.
///
/// Thread: any.  Errors: an exception of another type is number 212 and the text "undefined".
class KORVEBASE_EXPORT ParseCorbaUserException
{
public:
    /// "User exception: ", the scoped name of the kind, and the exception's own text.
    static QString GetException(const CORBA::UserException &e);
    /// 10000 + kind, or 900 + kind.
    static unsigned long convertException(const CORBA::UserException &e) noexcept;
};

} // namespace KorveDevice

namespace KorveChannel
{

/// Decodes what the interfaces of a manager raise: `exGen`, `exChanMan`, `exChan` and `exAdmin` of `TQ_KRV`.
///
/// Thread: any.  Errors: an exception of another type, `exKRV` too, is number 212 and the text "undefined".
class KORVEBASE_EXPORT ParseCorbaUserException
{
public:
    /// "User exception: ", the scoped name of the kind, and the exception's own text.
    static QString GetException(const CORBA::UserException &e);
    /// 700, 750 or 800 + kind; 501 for the one kind of exAdmin.
    static unsigned long convertException(const CORBA::UserException &e) noexcept;
};

} // namespace KorveChannel
