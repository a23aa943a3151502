#pragma once

#include "apps/korvectl/failure.h"

#include <functional>

namespace korvectl
{

/// An answer made of the answers to several questions, some of which may fail: the others count all the same.
class PartialAnswer
{
public:
    /// A Failure of @p question is told to the user, and remembered; false then.
    bool ask(const std::function<void()> &question);
    /// Some question was answered, or none was asked.
    bool isWorthPrinting() const { return answers > 0 || worst == ExitCode::Success; }
    /// Partial, when some were answered and some were not; when none was, that of the worst failure.
    ExitCode exitCode() const;

private:
    int answers = 0;
    ExitCode worst = ExitCode::Success;
};

} // namespace korvectl
