#include "benchmarks/remote/service.h"

#include "benchmarks/support/require.h"

#include <QCoreApplication>
#include <QTimer>

#include <ctime>

using namespace CorbaCommon;

namespace
{

constexpr int patienceMs = 60000;

OrbHandler &configuredOrb(const QString &address)
{
    OrbSettings settings = OrbSettings::fromEnvironment();
    settings.address = address;
    settings.centralService = address;
    OrbHandler::configure(settings);
    return OrbHandler::Instance();
}

} // namespace

Service &Service::instance()
{
    static Service service;
    return service;
}

ServiceProcess &Service::peer()
{
    static ServiceProcess process(QStringLiteral(PEER_PROGRAM), {});
    return process;
}

Service::Service()
    : child(QStringLiteral(SERVICE_PROGRAM), {lease.address()}), orbHandler(configuredOrb(lease.address()))
{
    require(orbHandler.ConnectToCCO(20, 50), "the central object service answers");
}

std::vector<qint64> Service::processes() const
{
    return {QCoreApplication::applicationPid(), child.processId()};
}

void waitFor(const std::function<bool()> &condition, const char *what)
{
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(patienceMs);
    while (!condition()) {
        require(limit.isActive(), what);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

qint64 nowNs()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return qint64{time.tv_sec} * 1000000000 + time.tv_nsec;
}
