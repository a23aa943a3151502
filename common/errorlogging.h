#pragma once

#include "korvebase/korvebase_export.h"

#include <QString>

namespace CORBA
{
class SystemException;
class UserException;
} // namespace CORBA

// Each operation traces one line, at level 32, and returns the error number of the failure, which does not depend on
// whether the line is traced. The first text is the name of the operation that failed. Made on the stack, for one call.
// Thread: any.  Errors: none leaves.

namespace KorveDevice
{

/// Failures of calls on a device's interfaces.
class KORVEBASE_EXPORT ErrorLogging
{
public:
    unsigned long userException(const CORBA::UserException &e, const QString &operation, const QString &device,
                                const QString &record) const noexcept;
    unsigned long userException(const CORBA::UserException &e, const QString &operation,
                                const QString &device) const noexcept;
    unsigned long userExceptionChannel(const CORBA::UserException &e, const QString &operation,
                                       const QString &channel) const noexcept;
    unsigned long systemException(const CORBA::SystemException &e, const QString &operation, const QString &device,
                                  const QString &record) const noexcept;
    unsigned long systemException(const CORBA::SystemException &e, const QString &operation,
                                  const QString &device) const noexcept;
    unsigned long unspecifiedError(const QString &operation, const QString &device,
                                   const QString &record) const noexcept;
    unsigned long unspecifiedError(const QString &operation, const QString &device) const noexcept;
};

} // namespace KorveDevice

namespace KorveChannel
{

/// Failures of calls about a channel.
class KORVEBASE_EXPORT ErrorLogging
{
public:
    unsigned long userException(const CORBA::UserException &e, const QString &operation,
                                const QString &channel) const noexcept;
    unsigned long systemException(const CORBA::SystemException &e, const QString &operation,
                                  const QString &channel) const noexcept;
    unsigned long unspecifiedError(const QString &operation, const QString &channel) const noexcept;
};

} // namespace KorveChannel

namespace KorveAdmin
{

/// Failures of calls on a manager's administration. They may raise exceptions of either family.
///
/// contract: the text is the device decoder's, the number the channel decoder's.
class KORVEBASE_EXPORT ErrorLogging
{
public:
    unsigned long userException(const CORBA::UserException &e, const QString &operation, const QString &device,
                                const QString &record) const noexcept;
    unsigned long userException(const CORBA::UserException &e, const QString &operation,
                                const QString &device) const noexcept;
    unsigned long systemException(const CORBA::SystemException &e, const QString &operation, const QString &device,
                                  const QString &record) const noexcept;
    unsigned long systemException(const CORBA::SystemException &e, const QString &operation,
                                  const QString &device) const noexcept;
    unsigned long unspecifiedError(const QString &operation, const QString &device,
                                   const QString &record) const noexcept;
    unsigned long unspecifiedError(const QString &operation, const QString &device) const noexcept;
};

} // namespace KorveAdmin
