#include "connectionmanagement/managerlookup.h"

#include "connectionmanagement/abstractserverconnectiondata.h"
#include "connectionmanagement/remotecall.h"

#include "coresupport/trace.h"
#include "idl/korvemanager.hh"
#include "orbconnection/orbhandler.h"

#include <QElapsedTimer>

namespace KorveCommon
{
namespace
{
using CorbaCommon::OrbHandler;

constexpr char sourceName[] =
    "connectionmanagement/abstractserverconnectiondata"; // contract: its traces name that class
} // namespace

bool ManagerLookup::find(const QString &subsystem, VtConnectData &data) const
{
    data.port = VtConnectData::defaultPort;
    if (!data.hostName.isEmpty())
        return AbstractServerConnectionData::GetFirstIPAddressOfHostName(data);
    if (!reachesCentralService())
        return false;
    const CCO::IF_CCO_c_var cco = CCO::IF_CCO_c::_duplicate(OrbHandler::Instance().GetCCO());
    const QString path = AbstractServerConnectionData::GetKorveOrbConnectionPath(subsystem);
    QElapsedTimer clock;
    clock.start();
    // contract: no pause between two passes; the naming round trip is the pace
    do {
        if (askManager(cco, path, data))
            return true;
        if (!data.hostName.isEmpty() && AbstractServerConnectionData::GetFirstIPAddressOfHostName(data))
            return true;
    } while (clock.elapsed() < limit.count());
    return false;
}

bool ManagerLookup::reachesCentralService()
{
    OrbHandler &orb = OrbHandler::Instance();
    return orb.CCOIsAvailable() || (orb.ConnectToCCO(2, 250) && orb.CCOIsAvailable());
}

QString ManagerLookup::failureText(const RemoteOutcome &outcome, const QString &path)
{
    using Kind = RemoteOutcome::Kind;
    const auto text = QStringLiteral("AbstractServerConnectionData::GetIPConnectionInformation(): "
                                     "%1Error resolving string with path: %2%3");
    const auto nobody = QStringLiteral(": No KorveManager registered!!");
    switch (outcome.kind) {
    case Kind::NotRegistered:
        return text.arg(QString(), path, nobody);
    case Kind::Transient:
        return text.arg(QStringLiteral("Transient! "), path, nobody);
    case Kind::ConnectionLost:
    case Kind::NotExisting:
    case Kind::SystemException:
        return text.arg(outcome.text + QLatin1String("! "), path, nobody);
    case Kind::ManagerException:
    case Kind::Unknown:
    case Kind::Done:
        break;
    }
    return text.arg(QString(), path, QString());
}

bool ManagerLookup::askManager(CCO::IF_CCO_c_ptr cco, const QString &path, VtConnectData &data)
{
    bool found = false;
    const RemoteOutcome outcome = remoteCall([&] {
        const CORBA::Object_var object = cco->Resolve(path.toLatin1().constData(), CCO::rtInstallation);
        const TQ_KRV::IF_KRV_c_KRV_var manager = TQ_KRV::IF_KRV_c_KRV::_narrow(object);
        if (CORBA::is_nil(manager))
            return;
        const CORBA::String_var workstation = manager->getWorkstationName();
        data.hostName = QString::fromUtf8(workstation.in()).toLower();
        found = AbstractServerConnectionData::GetFirstIPAddressOfHostName(data);
    });
    if (!outcome.isDone())
        traceAt(TraceLevel::Normal, sourceName, [&] { return failureText(outcome, path); });
    return found;
}
} // namespace KorveCommon
