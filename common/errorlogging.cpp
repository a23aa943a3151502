#include "common/errorlogging.h"

#include "common/errornumber.h"
#include "common/parsecorbauserexception.h"

#include "coresupport/trace.h"

#include <omniORB4/CORBA.h>

namespace
{

using CORBA::SystemException;
using CORBA::UserException;

constexpr char sourceName[] = "common/errorlogging";

/// The name that the ORB gives an exception.
QString textOf(const SystemException &e)
{
    return QLatin1String(e._name());
}

unsigned long numberOf(const SystemException &e) noexcept
{
    using namespace korve::errornumber;
    return CORBA::TRANSIENT::_downcast(&e) ? transient : systemException;
}

/// Traces a failure and returns its number. The text of the exception is made only if the line is wanted.
template <class ExceptionText>
unsigned long recordFailed(unsigned long number, const QString &operation, const QString &device, const QString &record,
                           const ExceptionText &exceptionText)
{
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("%1 for Device/Record %2/%3 failed with exception: %4")
            .arg(operation, device, record, exceptionText());
    });
    return number;
}

// contract: two have %4 for their third value; arg() fills the lowest mark that is left, so they read like the others.
constexpr char userOfDevice[] = "%1 for Device %2 failed with exception: %3";
constexpr char systemOfDevice[] = "%1 for Device %2 failed with exception: %4";
constexpr char userOfChannel[] = "%1 for Channel '%2' failed with exception: %3";
constexpr char systemOfChannel[] = "%1 for Channel '%2' failed with exception: %4";

/// As recordFailed(), of a device or a channel.
template <class ExceptionText>
unsigned long failed(unsigned long number, const char *form, const QString &operation, const QString &name,
                     const ExceptionText &exceptionText)
{
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QString::fromLatin1(form).arg(operation, name, exceptionText()); });
    return number;
}

unsigned long recordFailed(const QString &operation, const QString &device, const QString &record)
{
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("%1 for Device/Record '%2'/'%3' failed").arg(operation, device, record); });
    return korve::errornumber::unspecified;
}

unsigned long deviceFailed(const QString &operation, const QString &device)
{
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("%1 for Device'%2' failed").arg(operation, device); // contract: no blank
    });
    return korve::errornumber::unspecified;
}

} // namespace

namespace KorveDevice
{

unsigned long ErrorLogging::userException(const UserException &e, const QString &operation, const QString &device,
                                          const QString &record) const noexcept
{
    return recordFailed(ParseCorbaUserException::convertException(e), operation, device, record,
                        [&] { return ParseCorbaUserException::GetException(e); });
}

unsigned long ErrorLogging::userException(const UserException &e, const QString &operation,
                                          const QString &device) const noexcept
{
    return failed(ParseCorbaUserException::convertException(e), userOfDevice, operation, device,
                  [&] { return ParseCorbaUserException::GetException(e); });
}

unsigned long ErrorLogging::userExceptionChannel(const UserException &e, const QString &operation,
                                                 const QString &channel) const noexcept
{
    return failed(ParseCorbaUserException::convertException(e), userOfChannel, operation, channel,
                  [&] { return ParseCorbaUserException::GetException(e); });
}

unsigned long ErrorLogging::systemException(const SystemException &e, const QString &operation, const QString &device,
                                            const QString &record) const noexcept
{
    return recordFailed(numberOf(e), operation, device, record, [&] { return textOf(e); });
}

unsigned long ErrorLogging::systemException(const SystemException &e, const QString &operation,
                                            const QString &device) const noexcept
{
    return failed(numberOf(e), systemOfDevice, operation, device, [&] { return textOf(e); });
}

unsigned long ErrorLogging::unspecifiedError(const QString &operation, const QString &device,
                                             const QString &record) const noexcept
{
    return recordFailed(operation, device, record);
}

unsigned long ErrorLogging::unspecifiedError(const QString &operation, const QString &device) const noexcept
{
    return deviceFailed(operation, device);
}

} // namespace KorveDevice

namespace KorveChannel
{

unsigned long ErrorLogging::userException(const UserException &e, const QString &operation,
                                          const QString &channel) const noexcept
{
    return failed(ParseCorbaUserException::convertException(e), userOfChannel, operation, channel,
                  [&] { return ParseCorbaUserException::GetException(e); });
}

unsigned long ErrorLogging::systemException(const SystemException &e, const QString &operation,
                                            const QString &channel) const noexcept
{
    return failed(numberOf(e), systemOfChannel, operation, channel, [&] { return textOf(e); });
}

unsigned long ErrorLogging::unspecifiedError(const QString &operation, const QString &channel) const noexcept
{
    traceAt(TraceLevel::Normal, sourceName,
            [&] { return QStringLiteral("%1 for Channel '%2' failed").arg(operation, channel); });
    return korve::errornumber::unspecified;
}

} // namespace KorveChannel

namespace KorveAdmin
{

using DeviceDecoder = KorveDevice::ParseCorbaUserException;
using ChannelDecoder = KorveChannel::ParseCorbaUserException;

unsigned long ErrorLogging::userException(const UserException &e, const QString &operation, const QString &device,
                                          const QString &record) const noexcept
{
    return recordFailed(ChannelDecoder::convertException(e), operation, device, record,
                        [&] { return DeviceDecoder::GetException(e); }); // contract: two decoders
}

unsigned long ErrorLogging::userException(const UserException &e, const QString &operation,
                                          const QString &device) const noexcept
{
    return failed(ChannelDecoder::convertException(e), userOfDevice, operation, device,
                  [&] { return DeviceDecoder::GetException(e); }); // contract: two decoders
}

unsigned long ErrorLogging::systemException(const SystemException &e, const QString &operation, const QString &device,
                                            const QString &record) const noexcept
{
    return recordFailed(numberOf(e), operation, device, record, [&] { return textOf(e); });
}

unsigned long ErrorLogging::systemException(const SystemException &e, const QString &operation,
                                            const QString &device) const noexcept
{
    return failed(numberOf(e), systemOfDevice, operation, device, [&] { return textOf(e); });
}

unsigned long ErrorLogging::unspecifiedError(const QString &operation, const QString &device,
                                             const QString &record) const noexcept
{
    return recordFailed(operation, device, record);
}

unsigned long ErrorLogging::unspecifiedError(const QString &operation, const QString &device) const noexcept
{
    return deviceFailed(operation, device);
}

} // namespace KorveAdmin
