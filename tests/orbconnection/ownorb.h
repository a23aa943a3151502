#pragma once

#include "orbconnection/mirrortiming.h"
#include "orbconnection/orbhandler.h"
#include "orbconnection/vtconnectdata.h"

#include <functional>

/// The ORB of a test program that is its own server, at port 8004 of a loopback address that it leases until its end.
class OwnOrb
{
public:
    static CorbaCommon::OrbHandler &instance();
    static const QString &address();
    /// The same address in another way of writing, which the ORB does not recognise as its own: calls go over the
    /// network as if the server were another process.
    static VtConnectData addressFromOutside();

    static MirrorTiming timing();
    /// Runs the event loop until @p condition holds; false when it does not for long.
    static bool comesTrue(const std::function<bool()> &condition);
};
