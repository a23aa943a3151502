#include "apps/korvectl/centralservice.h"

#include "connectionmanagement/abstractserverconnectiondata.h"
#include "orbconnection/orbhandler.h"

#include <algorithm>

using CorbaCommon::OrbHandler;
using CorbaCommon::OrbSettings;
using std::chrono::milliseconds;

namespace korvectl
{

namespace
{

QStringList listOf(const CCO::seqString &names)
{
    QStringList list;
    for (CORBA::ULong position = 0; position < names.length(); ++position)
        list << QString::fromUtf8(names[position]);
    return list;
}

} // namespace

CentralService::CentralService(milliseconds timeout)
{
    OrbSettings settings = OrbSettings::fromEnvironment();
    settings.callTimeout = timeout;
    settings.connectTimeout = std::min(settings.connectTimeout, timeout);
    if (CorbaCommon::centralServiceReference(settings.centralService).isEmpty())
        throw Failure(ExitCode::Usage, QStringLiteral("The environment variable KORVE_CCO=%1 is not HOST or HOST:PORT.")
                                           .arg(settings.centralService));
    OrbHandler::configure(settings);
    if (!OrbHandler::Instance().isRunning())
        throw Failure(ExitCode::Failed,
                      QStringLiteral("There are no network connections from address %1; KORVE_ADDRESS "
                                     "has to be one of this host.")
                          .arg(settings.address));
}

QString CentralService::address() const
{
    const QString text = OrbHandler::Instance().settings().centralService;
    return text.contains(u':') ? text : QStringLiteral("%1:%2").arg(text).arg(OrbSettings::centralServicePort);
}

QString CentralService::localSubsystem(const Deadline &deadline) const
{
    QString name;
    const bool answered = deadline.comesTrue([&](milliseconds left) {
        try {
            name = QString::fromUtf8(CORBA::String_var(CCO::IF_CCO_c_var(reference(left))->GetSubSystemName()));
            return true;
        } catch (const CORBA::SystemException &) {
            return false;
        }
    });
    if (!answered)
        throw Failure(
            ExitCode::NotReachable,
            QStringLiteral("The central object service at %1 did not answer %2.").arg(address(), deadline.words()));
    return name;
}

QStringList CentralService::subsystems(milliseconds limit) const
{
    return listOf(CCO::seqString_var(CCO::IF_CCO_c_var(reference(limit))->GetSubSystems()));
}

QStringList CentralService::values(const QString &path, milliseconds limit) const
{
    const CCO::IF_CCO_c_var service = reference(limit);
    return listOf(CCO::seqString_var(service->ResolveValues(path.toUtf8().constData(), CCO::rtInstallation)));
}

CCO::IF_CCO_c_ptr CentralService::reference(milliseconds limit) const
{
    return OrbHandler::Instance().centralService(limit);
}

CORBA::Object_ptr CentralService::resolve(const QString &path, milliseconds limit) const
{
    try {
        return CCO::IF_CCO_c_var(reference(limit))->Resolve(path.toUtf8().constData(), CCO::rtInstallation);
    } catch (const CCO::IF_CCO_c_Naming::InvalidType &) { // nothing, or values
        return CORBA::Object::_nil();
    }
}

TQ_KRV::IF_KRV_c_KRV_ptr CentralService::manager(const QString &subsystem, milliseconds limit) const
{
    const CORBA::Object_var object = resolve(managerPath(subsystem), limit);
    const TQ_KRV::IF_KRV_c_KRV_var manager = TQ_KRV::IF_KRV_c_KRV::_unchecked_narrow(object);
    return CorbaCommon::withCallLimit<TQ_KRV::IF_KRV_c_KRV>(manager, limit);
}

TQ_KORVE::IF_Control_ptr CentralService::recorder(const QString &subsystem, const QString &device,
                                                  milliseconds limit) const
{
    const QString path = pathOf(subsystem, QStringLiteral("KorveRecorder/%1/IF_Control").arg(device));
    const CORBA::Object_var object = resolve(path, limit);
    const TQ_KORVE::IF_Control_var recorder = TQ_KORVE::IF_Control::_unchecked_narrow(object);
    return CorbaCommon::withCallLimit<TQ_KORVE::IF_Control>(recorder, limit);
}

QString CentralService::managerPath(const QString &subsystem)
{
    return KorveCommon::AbstractServerConnectionData::GetKorveOrbConnectionPath(subsystem);
}

QString CentralService::pathOf(const QString &subsystem, const QString &name)
{
    return managerPath(subsystem).replace(QLatin1String("KorveManager/IF_KRV_c_KRV"), name);
}

Failure CentralService::noManager(const QString &subsystem, const Deadline &deadline) const
{
    return Failure(ExitCode::NotReachable,
                   QStringLiteral("The central object service at %1 named no recorder manager of subsystem %2 that "
                                  "answered %3.")
                       .arg(address(), subsystem, deadline.words()));
}

} // namespace korvectl
