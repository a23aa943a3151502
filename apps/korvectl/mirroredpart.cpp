#include "apps/korvectl/mirroredpart.h"

#include "apps/korvectl/failure.h"

#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/valuebase.h"

#include <QEventLoop>
#include <QStringList>
#include <QTimer>

using std::chrono::milliseconds;

namespace korvectl
{

VtConnectData treeServerOf(const CentralService &service, const QString &subsystem, const Deadline &deadline)
{
    const QString local = service.localSubsystem(deadline);
    VtConnectData server;
    const bool answered = deadline.comesTrue([&](milliseconds left) {
        try {
            const TQ_KRV::IF_KRV_c_KRV_var manager = service.manager(subsystem, left);
            if (CORBA::is_nil(manager))
                return false;
            server.hostName = QString::fromUtf8(CORBA::String_var(manager->getWorkstationName()));
            return true;
        } catch (const CORBA::SystemException &) {
            return false;
        }
    });
    if (!answered)
        throw service.noManager(subsystem.isEmpty() ? local : subsystem, deadline);
    if (!VtConnectionObserver::GetFirstIPAddressOfHostNameStatic(server.hostName, server.ipAddress, true))
        throw Failure(
            ExitCode::NotReachable,
            QStringLiteral("The workstation of the recorder manager, %1, has no address that this host knows.")
                .arg(server.hostName));
    return server;
}

QString textOf(const VtConnectData &address)
{
    return QStringLiteral("%1:%2").arg(address.ipAddress).arg(address.port);
}

std::unique_ptr<VtConnectionObserver> mirrored(const VtConnectData &server, const QString &path, milliseconds limit)
{
    auto mirror = std::make_unique<VtConnectionObserver>(path, path, server, QString());
    QEventLoop loop;
    QObject::connect(mirror.get(), &VtConnectionObserver::si_connected, &loop, &QEventLoop::quit);
    QTimer::singleShot(limit, &loop, &QEventLoop::quit);
    loop.exec();
    return mirror->isConnected() ? std::move(mirror) : nullptr;
}

std::unique_ptr<VtConnectionObserver> requireMirrored(const VtConnectData &server, const QString &path,
                                                      milliseconds limit)
{
    auto mirror = mirrored(server, path, limit);
    if (!mirror)
        throw Failure(
            ExitCode::NotReachable,
            QStringLiteral("The value tree at %1 did not answer %2.").arg(textOf(server), Deadline(limit).words()));
    return mirror;
}

MirroredPart::MirroredPart(const VtConnectData &server, const QString &path, Look look, milliseconds limit)
    : wholePath(withoutEmptyParts(path))
{
    const Failure nothingThere(
        ExitCode::Refused, QStringLiteral("There is no %1 in the value tree at %2.").arg(wholePath, textOf(server)));
    if (!values::Tree::canHold(wholePath))
        throw nothingThere; // a mirror of such a path never connects
    const bool isRoot = wholePath == QLatin1String("/");
    if (look == Look::AtNode || isRoot) {
        mirror = requireMirrored(server, wholePath, limit);
        if (isRoot || !node()->GetTreeItems().empty())
            return;
        mirror->setDeleteClientTicPath(
            true); // else the node that it has made here would be taken for one of the server
        mirror.reset();
    }
    mirror = requireMirrored(server, parentOf(wholePath), limit);
    if (!node() && !value())
        throw nothingThere;
}

QString MirroredPart::parentOf(const QString &path)
{
    return withoutEmptyParts(path.left(path.lastIndexOf(u'/')));
}

QString MirroredPart::withoutEmptyParts(const QString &path)
{
    return u'/' + path.split(u'/', Qt::SkipEmptyParts).join(u'/');
}

} // namespace korvectl
