#pragma once

#include "orbconnection/sessiongate.h"
#include "orbconnection/valuetree.hh"

#include <QString>

namespace mirror
{
/// What the ORB's threads ask of the main thread. Each call returns at once.
class ISessionKeeper
{
public:
    virtual ~ISessionKeeper() = default;
    /// New sessions are to be taken from the gate.
    virtual void beginNew() = 0;
    /// @p batch counts in the line's `bytesToApply` and at the gate until it is applied, or dropped with its session.
    virtual void receive(quint64 session, std::string batch) = 0;
    /// The line's `snapshotAsked` is set until it is done.
    virtual void resynchronise(quint64 session) = 0;
    /// A session that had more to tell has room again.
    virtual void flush() = 0;
    virtual void end(quint64 session) = 0;
};

/// Answers the calls of clients; waits for nobody but, in pull, for something to tell.
class TreeServant : public POA_VALUETREE::TreeServer
{
public:
    TreeServant(const MirrorTiming &timing, std::shared_ptr<SessionGate> gate, std::shared_ptr<ISessionKeeper> keeper);

    CORBA::ULongLong open(const char *path, CORBA::ULong version) override;
    VALUETREE::Delivery *pull(CORBA::ULongLong session, CORBA::ULongLong received, CORBA::Boolean room) override;
    CORBA::Boolean push(CORBA::ULongLong session, CORBA::ULongLong sequence, const VALUETREE::Batch &bytes) override;
    void resynchronise(CORBA::ULongLong session) override;
    void close(CORBA::ULongLong session) override;

private:
    std::shared_ptr<SessionLine> lineOf(quint64 session) const;
    void refuseWhileMainThreadIsLost() const;

    const MirrorTiming timing;
    const std::shared_ptr<SessionGate> gate;
    const std::shared_ptr<ISessionKeeper> keeper;
};
} // namespace mirror
