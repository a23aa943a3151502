#pragma once

#include "idl/cco.hh"
#include "orbconnection/vtconnectdata.h"

#include <QString>

#include <chrono>

struct RemoteOutcome;

namespace KorveCommon
{
/// Finds the host of a subsystem's recorder manager by way of the central object service.
///
/// Thread: main; blocks, up to the time limit and one more round.  Errors: traced.
class ManagerLookup
{
public:
    explicit ManagerLookup(std::chrono::milliseconds limit = std::chrono::seconds(10)) : limit(limit) {}

    /// Fills in host and address. A host name that @p data brings along is used as it is, without asking anybody.
    bool find(const QString &subsystem, VtConnectData &data) const;

    /// Whether the central object service answers, or does so soon. Blocks.
    static bool reachesCentralService();

    /// What is traced of an inquiry at @p path that failed.
    static QString failureText(const RemoteOutcome &outcome, const QString &path);

private:
    static bool askManager(CCO::IF_CCO_c_ptr cco, const QString &path, VtConnectData &data);

    const std::chrono::milliseconds limit;
};
} // namespace KorveCommon
