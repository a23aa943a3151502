#include "tests/orbconnection/ownorb.h"

#include "orbconnection/vtserver.h"
#include "tests/support/loopbacklease.h"
#include "tests/support/waiting.h"

#include <QTest>

using namespace std::chrono_literals;

namespace
{
const LoopbackLease &lease()
{
    static const LoopbackLease lease;
    return lease;
}

bool configure()
{
    CorbaCommon::OrbSettings settings;
    settings.address = lease().address();
    settings.centralService = settings.address; // where nobody is
    settings.ports = {VtServer::port};
    return CorbaCommon::OrbHandler::configure(settings);
}
} // namespace

CorbaCommon::OrbHandler &OwnOrb::instance()
{
    static const bool isConfigured = configure();
    if (!isConfigured)
        throw std::runtime_error("the ORB runs already");
    return CorbaCommon::OrbHandler::Instance();
}

const QString &OwnOrb::address()
{
    return lease().address();
}

VtConnectData OwnOrb::addressFromOutside()
{
    const in_addr_t network = inet_addr(address().toLatin1().constData());
    return {QString(), QString::number(ntohl(network))};
}

MirrorTiming OwnOrb::timing()
{
    MirrorTiming timing;
    timing.heartbeat = 700ms; // a busy machine holds the main thread up
    timing.backOff = {10ms, 50ms, 100ms};
    return timing;
}

bool OwnOrb::comesTrue(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, patienceMs);
}
