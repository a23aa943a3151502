#pragma once

#include "orbconnection/orbhandler.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/serviceprocess.h"

#include <functional>

/// The other end, in a process of its own (serviceprogram.cpp), and this program's ORB. Begins when first asked for.
class Service
{
public:
    static Service &instance();
    /// The other end of the peer (peerprogram.cpp).
    static ServiceProcess &peer();

    ServiceProcess &process() { return child; }
    CorbaCommon::OrbHandler &orb() { return orbHandler; }
    const QString &address() const { return lease.address(); }
    /// What it printed when it was ready, by its place.
    QString readyWord(int place) const { return child.readyWords().value(place); }
    /// Those that a call or a change goes through.
    std::vector<qint64> processes() const;

private:
    Service();

    const LoopbackLease lease;
    ServiceProcess child;
    CorbaCommon::OrbHandler &orbHandler;
};

/// Runs the event loop until @p condition holds, which ends the program when it takes too long.
void waitFor(const std::function<bool()> &condition, const char *what);

/// Nanoseconds of the clock that all processes share.
qint64 nowNs();

/// How long @p work takes, in seconds.
template <typename Work> double secondsOf(const Work &work)
{
    const qint64 begin = nowNs();
    work();
    return static_cast<double>(nowNs() - begin) / 1e9;
}
