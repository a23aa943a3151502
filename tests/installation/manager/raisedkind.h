#pragma once

#include <omniORB4/CORBA.h>

#include <functional>
#include <optional>

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

/// Whether the @p Exception of the ORB that @p call raises says that it may have been carried out; without result when
/// nothing is raised.
template <typename Exception> std::optional<CORBA::CompletionStatus> completionBy(const std::function<void()> &call)
{
    try {
        call();
    } catch (const Exception &error) {
        return error.completed();
    }
    return {};
}
