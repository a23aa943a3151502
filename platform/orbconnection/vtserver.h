#pragma once

#include "orbconnection/mirrortiming.h"
#include "orbconnection/orbconnection_export.h"

#include <memory>

namespace values
{
class Tree;
}

/// Offers a tree to other processes, at the key "ValueTree" of the ORB, whose settings must have port 8004.
///
/// Clients get what stands below a path of theirs, then all changes, and may change values and add some, as
/// docs/mirror.md says.
/// Thread: main; never blocks. Needs a running OrbHandler.  Errors: traced; isServing() is false then.
class ORBCONNECTION_EXPORT VtServer
{
public:
    static constexpr unsigned short port = 8004;

    /// The tree of the process.
    VtServer();
    explicit VtServer(values::Tree &tree, const MirrorTiming &timing = {});
    VtServer(const VtServer &) = delete;
    /// Ends all sessions.
    ~VtServer();

    bool isServing() const;
    /// How many clients are connected; one that has been silent for too long counts no more.
    int sessionCount() const;

private:
    class Private;
    const std::unique_ptr<Private> d;
};
