#pragma once

#include "objectbase/exceptions.h"

#include <string>

namespace modeltest
{

/// What @p call throws, as "Kind: message"; an empty text when it returns.
template <class Call> std::string failureOf(Call &&call)
{
    try {
        call();
    } catch (const REPORTGENERATOR::RGException &failure) {
        return (failure.GetKind() + ": " + failure.GetMessage()).toStdString();
    }
    return {};
}

} // namespace modeltest
