#pragma once

#include <functional>

/// The kind of the @p Exception that @p call raises; -1 when nothing is raised.
template <typename Exception> int kindRaisedBy(const std::function<void()> &call)
{
    try {
        call();
    } catch (const Exception &raised) {
        return raised.kind;
    }
    return -1;
}
