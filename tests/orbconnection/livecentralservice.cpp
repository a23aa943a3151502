#include "tests/orbconnection/livecentralservice.h"

#include "tests/support/waiting.h"

#include <QTest>

using namespace CorbaCommon;

namespace
{

OrbHandler &configuredOrb(const QString &address)
{
    static const bool configured = [&] {
        OrbSettings settings = OrbSettings::fromEnvironment();
        settings.address = address;
        settings.centralService = address;
        settings.connectTimeout = std::chrono::milliseconds(1000);
        return OrbHandler::configure(settings);
    }();
    Q_UNUSED(configured)
    return OrbHandler::Instance();
}
} // namespace

LiveCentralService::LiveCentralService() : orb(configuredOrb(address()))
{
    startService();
}

const QString &LiveCentralService::address()
{
    static const LoopbackLease lease;
    return lease.address();
}

void LiveCentralService::startService()
{
    process = std::make_unique<ServiceProcess>(
        QStringLiteral(CENTRAL_SERVICE_PROGRAM),
        QStringList{address(), QStringLiteral("Alpha"), QStringLiteral("station-a")});
    EXPECT_TRUE(orb.CCOIsAvailable()); // past the connections to an earlier one
}

void LiveCentralService::killService()
{
    process->kill();
}

CCO::IF_CCO_c_ptr LiveCentralService::direct() const
{
    return orb.centralService(std::chrono::seconds(10));
}

bool LiveCentralService::comesTrue(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, patienceMs);
}

CCO::seqString sequenceOf(const std::vector<std::string> &texts)
{
    CCO::seqString sequence;
    sequence.length(static_cast<CORBA::ULong>(texts.size()));
    for (CORBA::ULong i = 0; i < sequence.length(); ++i)
        sequence[i] = texts[i].c_str();
    return sequence;
}
