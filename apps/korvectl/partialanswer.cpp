#include "apps/korvectl/partialanswer.h"

#include "apps/korvectl/console.h"

#include <algorithm>

namespace korvectl
{

bool PartialAnswer::ask(const std::function<void()> &question)
{
    try {
        question();
        ++answers;
        return true;
    } catch (const Failure &failure) {
        complain(failure);
        worst = std::max(worst, failure.exitCode);
        return false;
    }
}

ExitCode PartialAnswer::exitCode() const
{
    return worst != ExitCode::Success && answers > 0 ? ExitCode::Partial : worst;
}

} // namespace korvectl
