#pragma once

#include <QString>

#include <stdexcept>
#include <system_error>

namespace korvectl
{

/// How the program ends; scripts rely on the numbers.
enum class ExitCode {
    Success = 0,
    Usage = 1,
    NotReachable = 2,
    Refused = 3, ///< or it is not there: a device, a path
    Failed = 4,
    Partial = 5, ///< a part of the answer was had, and printed
    Unknown = 6, ///< what was asked for may have been done, or not
};

/// Why a request has no result, in one sentence for the user.
class Failure : public std::runtime_error
{
public:
    Failure(ExitCode exitCode, const QString &sentence) : std::runtime_error(sentence.toStdString()), exitCode(exitCode)
    {
    }

    const ExitCode exitCode;
};

/// The system's words for a value of errno.
inline QString reasonOf(int error)
{
    return QString::fromStdString(std::generic_category().message(error));
}

} // namespace korvectl
