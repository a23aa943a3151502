#pragma once

#include "apps/korvectl/centralservice.h"

#include "orbconnection/vtconnectionobserver.h"
#include "valuetreelib/tree.h"

#include <memory>

namespace korvectl
{

/// Waits for the manager of @p subsystem, and says where it serves its value tree. @throws Failure
VtConnectData treeServerOf(const CentralService &service, const QString &subsystem, const Deadline &deadline);

/// "HOST:PORT"
QString textOf(const VtConnectData &address);

/// Mirrors @p path of that tree at the same path of this process's tree. Runs the event loop until it is there, at most
/// for @p limit; null when it is not.
std::unique_ptr<VtConnectionObserver> mirrored(const VtConnectData &server, const QString &path,
                                               std::chrono::milliseconds limit);

/// Mirrors it as mirrored() does. @throws Failure when it is not there in time.
std::unique_ptr<VtConnectionObserver> requireMirrored(const VtConnectData &server, const QString &path,
                                                      std::chrono::milliseconds limit);

/// A part of a manager's value tree, mirrored at the same path of this process's tree for as long as this lives.
///
/// Thread: main; runs the event loop until the part is there.
class MirroredPart
{
public:
    enum class Look {
        AtNode, ///< what stands below the path; where nothing does, the value at the path, and what stands beside it
        AtItem, ///< in any case the value at the path, too, and what stands beside it
    };

    /// Waits, at most for @p limit, for each of at most two connections. @throws Failure also when there is nothing.
    MirroredPart(const VtConnectData &server, const QString &path, Look look, std::chrono::milliseconds limit);

    VtConnectionObserver &connection() const { return *mirror; }
    /// Absolute, without empty parts.
    const QString &path() const { return wholePath; }
    /// Either may be null.
    values::Node *node() const { return values::Tree::Instance().findNode(wholePath); }
    values::ValueBase *value() const { return values::Tree::Instance().findValue(wholePath); }
    /// "/a/b" of "/a/b/c"; "/" of "/a" and of "/".
    static QString parentOf(const QString &path);
    static QString withoutEmptyParts(const QString &path);

private:
    const QString wholePath;
    std::unique_ptr<VtConnectionObserver> mirror;
};

} // namespace korvectl
