#pragma once

#include "connectionmanagement/remotecall.h"

#include "idl/korvemanager.hh"

#include <QString>

#include <optional>

namespace KorveGUI
{
/// A command as the traces name it.
struct TracedCommand {
    const char *name;
    QString deviceId;
    std::optional<QString> recordId{}; ///< none: the command is about a device alone
};

/// Traces @p failure as one of administration; the error number for it.
unsigned long numberOfFailure(const RemoteFailure &failure, const TracedCommand &command);

/// As above, and then what kind of failure it was, the latter for @p sourceName.
void traceFailure(const RemoteFailure &failure, const TracedCommand &command, const char *sourceName);

/// What the manager's main interface refuses is traced in its own words, behind @p operation; all else by
/// traceFailure().
void traceManagerFailure(const RemoteFailure &failure, const TracedCommand &command, const QString &operation,
                         const char *sourceName);
} // namespace KorveGUI
